// Saturation written out as compare and select, and selection between two arrays by a condition on a third.
#include "program.h"

#define CLAMP(name, kind)                                                             \
  static kind void name(int16_t* out, const int16_t* a, const int16_t* b, size_t n) { \
    for (size_t i = 0; i < n; ++i) {                                                  \
      const int32_t sum = (int32_t)a[i] + b[i];                                       \
      out[i] = (int16_t)(sum > 1000 ? 1000 : sum < -1000 ? -1000 : sum);              \
    }                                                                                 \
  }
CLAMP(clamped_sum, VECTOR)
CLAMP(clamped_sum_scalar, SCALAR)

#define CHOOSE(name, kind, element)                                                                     \
  static kind void name(element* out, const element* a, const element* b, const element* c, size_t n) { \
    for (size_t i = 0; i < n; ++i) out[i] = c[i] > a[i] ? a[i] + 3 : b[i] ^ c[i];                       \
  }
CHOOSE(choose_u8, VECTOR, uint8_t)
CHOOSE(choose_u8_scalar, SCALAR, uint8_t)
CHOOSE(choose_s64, VECTOR, int64_t)
CHOOSE(choose_s64_scalar, SCALAR, int64_t)

// Only where the condition holds is anything stored.
#define WHERE(name, kind)                                             \
  static kind void name(uint32_t* out, const uint32_t* a, size_t n) { \
    for (size_t i = 0; i < n; ++i) {                                  \
      if (a[i] % 4 == 1) out[i] = a[i] - 7;                           \
    }                                                                 \
  }
WHERE(store_where, VECTOR)
WHERE(store_where_scalar, SCALAR)

enum { BYTES = LARGEST_TEST_SIZE * 8 };
static int64_t a[LARGEST_TEST_SIZE], b[LARGEST_TEST_SIZE], c[LARGEST_TEST_SIZE];
static int64_t out[LARGEST_TEST_SIZE], judged[LARGEST_TEST_SIZE];

int main(void) {
  fill_random(a, BYTES);
  fill_random(b, BYTES);
  fill_random(c, BYTES);
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    clamped_sum((void*)out, (void*)a, (void*)b, n);
    clamped_sum_scalar((void*)judged, (void*)a, (void*)b, n);
    check_case("clamped_sum", n, same_bytes(out, judged, sizeof out));
    choose_u8((void*)out, (void*)a, (void*)b, (void*)c, n);
    choose_u8_scalar((void*)judged, (void*)a, (void*)b, (void*)c, n);
    check_case("choose_u8", n, same_bytes(out, judged, sizeof out));
    choose_s64(out, a, b, c, n);
    choose_s64_scalar(judged, a, b, c, n);
    check_case("choose_s64", n, same_bytes(out, judged, sizeof out));
    store_where((void*)out, (void*)c, n);
    store_where_scalar((void*)judged, (void*)c, n);
    check_case("store_where", n, same_bytes(out, judged, sizeof out));
  }
  print_digest("results", out, sizeof out);
  return finish("clamp_select");
}
