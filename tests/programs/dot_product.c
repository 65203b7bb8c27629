// Dot products of integers of four widths.
#include "program.h"

#define DOT(name, kind, element, sum)                                  \
  static kind sum name(const element* a, const element* b, size_t n) { \
    sum total = 0;                                                     \
    for (size_t i = 0; i < n; ++i) total += (sum)(a[i] * b[i]);        \
    return total;                                                      \
  }
DOT(dot_u8, VECTOR, uint8_t, uint8_t)
DOT(dot_u8_scalar, SCALAR, uint8_t, uint8_t)
DOT(dot_u16, VECTOR, uint16_t, uint16_t)
DOT(dot_u16_scalar, SCALAR, uint16_t, uint16_t)
DOT(dot_u32, VECTOR, uint32_t, uint32_t)
DOT(dot_u32_scalar, SCALAR, uint32_t, uint32_t)
DOT(dot_u64, VECTOR, uint64_t, uint64_t)
DOT(dot_u64_scalar, SCALAR, uint64_t, uint64_t)

static uint64_t left[LARGEST_TEST_SIZE], right[LARGEST_TEST_SIZE];

int main(void) {
  fill_random(left, sizeof left);
  fill_random(right, sizeof right);
  const void *a = left, *b = right;
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    const uint64_t result = dot_u64(a, b, n);
    check_case("dot_u8", n, dot_u8(a, b, n) == dot_u8_scalar(a, b, n));
    check_case("dot_u16", n, dot_u16(a, b, n) == dot_u16_scalar(a, b, n));
    check_case("dot_u32", n, dot_u32(a, b, n) == dot_u32_scalar(a, b, n));
    check_case("dot_u64", n, result == dot_u64_scalar(a, b, n));
    printf("%zu elements: %016llx\n", n, (unsigned long long)result);
  }
  return finish("dot_product");
}
