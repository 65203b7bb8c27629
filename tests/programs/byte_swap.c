// Byte order reversed: groups of two and four bytes, and whole arrays turned round.
#include "program.h"

#define SWAP_2(name, kind)                                                            \
  static kind void name(uint8_t* restrict out, const uint8_t* restrict a, size_t n) { \
    for (size_t i = 0; i < n; ++i) {                                                  \
      out[2 * i] = a[2 * i + 1];                                                      \
      out[2 * i + 1] = a[2 * i];                                                      \
    }                                                                                 \
  }
SWAP_2(swap_2, VECTOR)
SWAP_2(swap_2_scalar, SCALAR)

#define SWAP_4(name, kind)                                                            \
  static kind void name(uint8_t* restrict out, const uint8_t* restrict a, size_t n) { \
    for (size_t i = 0; i < n; ++i) {                                                  \
      out[4 * i] = a[4 * i + 3];                                                      \
      out[4 * i + 1] = a[4 * i + 2];                                                  \
      out[4 * i + 2] = a[4 * i + 1];                                                  \
      out[4 * i + 3] = a[4 * i];                                                      \
    }                                                                                 \
  }
SWAP_4(swap_4, VECTOR)
SWAP_4(swap_4_scalar, SCALAR)

#define TURN(name, kind, element)                                   \
  static kind void name(element* out, const element* a, size_t n) { \
    for (size_t i = 0; i < n; ++i) out[i] = a[n - 1 - i];           \
  }
TURN(turn_u8, VECTOR, uint8_t)
TURN(turn_u8_scalar, SCALAR, uint8_t)
TURN(turn_u32, VECTOR, uint32_t)
TURN(turn_u32_scalar, SCALAR, uint32_t)

static uint64_t a[LARGEST_TEST_SIZE], out[LARGEST_TEST_SIZE], judged[LARGEST_TEST_SIZE];

int main(void) {
  fill_random(a, sizeof a);
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
#define TRY(name, element)                         \
  name((element*)out, (element*)a, n);             \
  name##_scalar((element*)judged, (element*)a, n); \
  check_case(#name, n, same_bytes(out, judged, sizeof out));
    TRY(swap_2, uint8_t)
    TRY(swap_4, uint8_t)
    TRY(turn_u8, uint8_t)
    TRY(turn_u32, uint32_t)
#undef TRY
  }
  print_digest("results", out, sizeof out);
  return finish("byte_swap");
}
