// Least and greatest elements, signed and unsigned, and the lane-wise minimum of two arrays.
#include "program.h"

#define EXTREME(name, kind, element, start, better)                       \
  static kind element name(const element* a, size_t n) {                  \
    element best = start;                                                 \
    for (size_t i = 0; i < n; ++i) best = a[i] better best ? a[i] : best; \
    return best;                                                          \
  }
EXTREME(least_s32, VECTOR, int32_t, INT32_MAX, <)
EXTREME(least_s32_scalar, SCALAR, int32_t, INT32_MAX, <)
EXTREME(greatest_s32, VECTOR, int32_t, INT32_MIN, >)
EXTREME(greatest_s32_scalar, SCALAR, int32_t, INT32_MIN, >)
EXTREME(least_u8, VECTOR, uint8_t, UINT8_MAX, <)
EXTREME(least_u8_scalar, SCALAR, uint8_t, UINT8_MAX, <)
EXTREME(greatest_u16, VECTOR, uint16_t, 0, >)
EXTREME(greatest_u16_scalar, SCALAR, uint16_t, 0, >)
EXTREME(greatest_s64, VECTOR, int64_t, INT64_MIN, >)
EXTREME(greatest_s64_scalar, SCALAR, int64_t, INT64_MIN, >)

#define PAIRWISE(name, kind)                                                          \
  static kind void name(int16_t* out, const int16_t* a, const int16_t* b, size_t n) { \
    for (size_t i = 0; i < n; ++i) out[i] = a[i] < b[i] ? a[i] : b[i];                \
  }
PAIRWISE(pairwise_least, VECTOR)
PAIRWISE(pairwise_least_scalar, SCALAR)

static int64_t data[LARGEST_TEST_SIZE];
static int16_t out[LARGEST_TEST_SIZE], judged[LARGEST_TEST_SIZE];

int main(void) {
  fill_random(data, sizeof data);
  const void* a = data;
  const int16_t* halves = a;
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    check_case("least_s32", n, least_s32(a, n) == least_s32_scalar(a, n));
    check_case("greatest_s32", n, greatest_s32(a, n) == greatest_s32_scalar(a, n));
    check_case("least_u8", n, least_u8(a, n) == least_u8_scalar(a, n));
    check_case("greatest_u16", n, greatest_u16(a, n) == greatest_u16_scalar(a, n));
    check_case("greatest_s64", n, greatest_s64(a, n) == greatest_s64_scalar(a, n));
    pairwise_least(out, halves, halves + n, n);
    pairwise_least_scalar(judged, halves, halves + n, n);
    for (size_t k = 0; k < n; ++k) check_case("pairwise_least", n, out[k] == judged[k]);
    printf("%zu elements: %d %d %u\n", n, least_s32(a, n), greatest_s32(a, n), least_u8(a, n));
  }
  return finish("min_max");
}
