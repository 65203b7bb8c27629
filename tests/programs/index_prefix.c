// Arrays made from the element's index, in all four widths.
#include "program.h"

#define RAMP(name, kind, element)                                                                   \
  static kind void name(element* out, const element* a, element first, element step, size_t n) {    \
    for (size_t i = 0; i < n; ++i) out[i] = (element)(a[i] + (element)(first + (element)i * step)); \
  }
RAMP(ramp_u8, VECTOR, uint8_t)
RAMP(ramp_u8_scalar, SCALAR, uint8_t)
RAMP(ramp_u16, VECTOR, uint16_t)
RAMP(ramp_u16_scalar, SCALAR, uint16_t)
RAMP(ramp_u32, VECTOR, uint32_t)
RAMP(ramp_u32_scalar, SCALAR, uint32_t)
RAMP(ramp_u64, VECTOR, uint64_t)
RAMP(ramp_u64_scalar, SCALAR, uint64_t)

static uint64_t a[LARGEST_TEST_SIZE], out[LARGEST_TEST_SIZE], judged[LARGEST_TEST_SIZE];

int main(void) {
  fill_random(a, sizeof a);
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
#define TRY(name, element)                                                   \
  name((element*)out, (element*)a, (element)17, (element)-5, n);             \
  name##_scalar((element*)judged, (element*)a, (element)17, (element)-5, n); \
  check_case(#name, n, same_bytes(out, judged, sizeof out));
    TRY(ramp_u8, uint8_t)
    TRY(ramp_u16, uint16_t)
    TRY(ramp_u32, uint32_t)
    TRY(ramp_u64, uint64_t)
#undef TRY
  }
  print_digest("results", out, sizeof out);
  return finish("index_prefix");
}
