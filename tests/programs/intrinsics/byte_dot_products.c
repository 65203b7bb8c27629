// Sums of four products of bytes in words, and of halfwords in doublewords (SDOT, UDOT), also by one element of each
// 128 bits, over arrays that end within a vector.
#include "vectors.h"

enum { N = LARGEST_TEST_SIZE };

#define DOTS(sum, part, bits, lane)                                                                                \
  static VECTOR void sum##_dots(sum* out, const part* a, const part* b, size_t n) {                                \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(part)) {                                                      \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n), all = svptrue_b##bits();                                  \
      svst1(all, out, svdot(svld1(all, out), svld1(pg, a + i), svld1(pg, b + i)));                                 \
    }                                                                                                              \
  }                                                                                                                \
  static VECTOR void sum##_dots_by_lane(sum* out, const part* a, const part* b, size_t n) {                        \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(part)) {                                                      \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n), all = svptrue_b##bits();                                  \
      svst1(all, out, svdot_lane(svld1(all, out), svld1(pg, a + i), svld1(pg, b + i), lane));                      \
    }                                                                                                              \
  }                                                                                                                \
  static SCALAR void sum##_dots_scalar(sum* out, const part* a, const part* b, size_t n, bool by_lane) {           \
    const size_t lanes = svcntb() / sizeof(sum), segment = 16 / sizeof(sum);                                       \
    for (size_t i = 0; i < n; ++i) {                                                                               \
      const size_t quad = i / 4, other = by_lane ? quad / segment * segment + lane : quad, at = 4 * other + i % 4; \
      out[quad % lanes] += (sum)a[i] * (at < n ? b[at] : 0);                                                       \
    }                                                                                                              \
  }

#define TEST(sum, part, bits, lane)                                                 \
  DOTS(sum, part, bits, lane)                                                       \
  static void sum##_test(void) {                                                    \
    static part a[N], b[N];                                                         \
    static sum out[VECTOR_BYTES / sizeof(sum)], judged[VECTOR_BYTES / sizeof(sum)]; \
    fill_random(a, sizeof a);                                                       \
    fill_random(b, sizeof b);                                                       \
    a[0] = b[0] = (part)((part)1 << (8 * sizeof(part) - 1));                        \
    for (size_t i = 0; i < TEST_SIZES; ++i) {                                       \
      const size_t n = test_sizes[i];                                               \
      sum##_dots(out, a, b, n);                                                     \
      sum##_dots_scalar(judged, a, b, n, false);                                    \
      check_case(#sum, n, same_bytes(out, judged, svcntb()));                       \
      sum##_dots_by_lane(out, a, b, n);                                             \
      sum##_dots_scalar(judged, a, b, n, true);                                     \
      check_case(#sum " by lane", n, same_bytes(out, judged, svcntb()));            \
    }                                                                               \
    print_digest(#sum, out, svcntb());                                              \
  }
TEST(int32_t, int8_t, 8, 2)
TEST(uint32_t, uint8_t, 8, 3)
TEST(int64_t, int16_t, 16, 1)
TEST(uint64_t, uint16_t, 16, 1)
#undef TEST
#undef DOTS

int main(void) {
  int32_t_test();
  uint32_t_test();
  int64_t_test();
  uint64_t_test();
  return finish("byte_dot_products");
}
