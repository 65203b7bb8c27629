// Copies at every alignment, and differences of elements of two widths, whose loads widen.
#include "program.h"

#define COPY(name, kind)                                                              \
  static kind void name(uint8_t* restrict out, const uint8_t* restrict a, size_t n) { \
    for (size_t i = 0; i < n; ++i) out[i] = a[i] ^ 0x5A;                              \
  }
COPY(copy_u8, VECTOR)
COPY(copy_u8_scalar, SCALAR)

#define WIDEN(name, kind, narrow, wide)                                                                   \
  static kind void name(wide* restrict out, const narrow* restrict a, const wide* restrict b, size_t n) { \
    for (size_t i = 0; i < n; ++i) out[i] = b[i] - a[i];                                                  \
  }
WIDEN(widen_u8_u64, VECTOR, uint8_t, uint64_t)
WIDEN(widen_u8_u64_scalar, SCALAR, uint8_t, uint64_t)
WIDEN(widen_s16_s32, VECTOR, int16_t, int32_t)
WIDEN(widen_s16_s32_scalar, SCALAR, int16_t, int32_t)
WIDEN(widen_s32_s64, VECTOR, int32_t, int64_t)
WIDEN(widen_s32_s64_scalar, SCALAR, int32_t, int64_t)

static uint64_t a[LARGEST_TEST_SIZE + 1], b[LARGEST_TEST_SIZE + 1];
static uint64_t out[LARGEST_TEST_SIZE + 1], judged[LARGEST_TEST_SIZE + 1];

int main(void) {
  fill_random(a, sizeof a);
  fill_random(b, sizeof b);
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    const size_t skew = i % 8;
    copy_u8((uint8_t*)out + skew, (uint8_t*)a + (i * 5) % 8, n);
    copy_u8_scalar((uint8_t*)judged + skew, (uint8_t*)a + (i * 5) % 8, n);
    check_case("copy_u8", n, same_bytes(out, judged, sizeof out));
#define TRY(name, to, first, second)                    \
  name((to*)out, (first*)a, (second*)b, n);             \
  name##_scalar((to*)judged, (first*)a, (second*)b, n); \
  check_case(#name, n, same_bytes(out, judged, sizeof out));
    TRY(widen_u8_u64, uint64_t, uint8_t, uint64_t)
    TRY(widen_s16_s32, int32_t, int16_t, int32_t)
    TRY(widen_s32_s64, int64_t, int32_t, int64_t)
#undef TRY
  }
  print_digest("results", out, sizeof out);
  return finish("memory_copy");
}
