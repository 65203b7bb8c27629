// Filters that keep the elements of an array that lie in a range, in order: COMPACT after comparisons, with CNTP or
// INCP to count them.
#include "vectors.h"

enum { N = LARGEST_TEST_SIZE };

#define FILTER(element, bits)                                                                                     \
  static VECTOR size_t element##_filter(element* out, const element* in, element least, element most, size_t n) { \
    size_t kept = 0;                                                                                              \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(element)) {                                                  \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n);                                                          \
      const svbool_t wanted = svcmple(svcmpge(pg, svld1(pg, in + i), least), svld1(pg, in + i), most);            \
      const size_t count = svcntp_b##bits(pg, wanted);                                                            \
      svst1(svwhilelt_b##bits##_u64(0, count), out + kept, svcompact(wanted, svld1(pg, in + i)));                 \
      kept = svqincp_n_u64_b##bits(kept, wanted);                                                                 \
    }                                                                                                             \
    return kept;                                                                                                  \
  }                                                                                                               \
  static SCALAR size_t element##_filter_scalar(element* out, const element* in, element least, element most,      \
                                               size_t n) {                                                        \
    size_t kept = 0;                                                                                              \
    for (size_t i = 0; i < n; ++i) {                                                                              \
      if (in[i] >= least && in[i] <= most) out[kept++] = in[i];                                                   \
    }                                                                                                             \
    return kept;                                                                                                  \
  }

// Ranges that keep nothing, little, much and all, of elements from -100 to 100.
static const int ranges[][2] = {{1000, 2000}, {5, 10}, {-60, 70}, {-200, 200}};

#define TEST(element, bits)                                                               \
  FILTER(element, bits)                                                                   \
  static void element##_test(void) {                                                      \
    static element in[N], out[N], judged[N];                                              \
    for (size_t i = 0; i < N; ++i) in[i] = (element)(int)(next_random() % 201) - 100;     \
    for (size_t r = 0; r < sizeof ranges / sizeof *ranges; ++r) {                         \
      for (size_t i = 0; i < TEST_SIZES; ++i) {                                           \
        const element least = (element)ranges[r][0], most = (element)ranges[r][1];        \
        const size_t n = test_sizes[i], kept = element##_filter(out, in, least, most, n); \
        const size_t wanted = element##_filter_scalar(judged, in, least, most, n);        \
        check_case(#element, n, kept == wanted && same_bytes(out, judged, sizeof out));   \
        printf(#element ": %zu of %zu kept\n", kept, n);                                  \
      }                                                                                   \
    }                                                                                     \
    print_digest(#element, out, sizeof out);                                              \
  }
TEST(int32_t, 32)
TEST(uint64_t, 64)
TEST(float, 32)
TEST(double, 64)
#undef TEST
#undef FILTER

int main(void) {
  int32_t_test();
  uint64_t_test();
  float_test();
  double_test();
  return finish("compact_filter");
}
