// Reductions over the bits of arrays: AND, OR, exclusive OR of all, and the parity of each element by shifts.
#include "program.h"

#define REDUCE(name, kind, element, start, operation)                       \
  static kind element name(const element* a, size_t n) {                    \
    element total = start;                                                  \
    for (size_t i = 0; i < n; ++i) total = (element)(total operation a[i]); \
    return total;                                                           \
  }
REDUCE(and_u32, VECTOR, uint32_t, UINT32_MAX, &)
REDUCE(and_u32_scalar, SCALAR, uint32_t, UINT32_MAX, &)
REDUCE(or_u16, VECTOR, uint16_t, 0, |)
REDUCE(or_u16_scalar, SCALAR, uint16_t, 0, |)
REDUCE(xor_u8, VECTOR, uint8_t, 0, ^)
REDUCE(xor_u8_scalar, SCALAR, uint8_t, 0, ^)
REDUCE(xor_u64, VECTOR, uint64_t, 0, ^)
REDUCE(xor_u64_scalar, SCALAR, uint64_t, 0, ^)

// The parity of an element gathers in its highest bit.
#define ODD(name, kind)                                    \
  static kind uint32_t name(const uint32_t* a, size_t n) { \
    uint32_t odd = 0;                                      \
    for (size_t i = 0; i < n; ++i) {                       \
      uint32_t v = a[i];                                   \
      v ^= v << 16;                                        \
      v ^= v << 8;                                         \
      v ^= v << 4;                                         \
      v ^= v << 2;                                         \
      v ^= v << 1;                                         \
      odd += (v & 0x80000000) != 0;                        \
    }                                                      \
    return odd;                                            \
  }
ODD(odd_elements, VECTOR)
ODD(odd_elements_scalar, SCALAR)

static uint64_t data[LARGEST_TEST_SIZE];

int main(void) {
  fill_random(data, sizeof data);
  for (size_t i = 0; i < LARGEST_TEST_SIZE; ++i) data[i] |= 0x0000100000001000;
  const void* a = data;
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    check_case("and_u32", n, and_u32(a, n) == and_u32_scalar(a, n));
    check_case("or_u16", n, or_u16(a, n) == or_u16_scalar(a, n));
    check_case("xor_u8", n, xor_u8(a, n) == xor_u8_scalar(a, n));
    check_case("xor_u64", n, xor_u64(a, n) == xor_u64_scalar(a, n));
    check_case("odd_elements", n, odd_elements(a, n) == odd_elements_scalar(a, n));
    printf("%zu elements: %u odd\n", n, odd_elements(a, n));
  }
  return finish("bit_reductions");
}
