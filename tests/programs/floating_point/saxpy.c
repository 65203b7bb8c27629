// a x + y in half, single and double precision, rounded twice (FMUL, FADD) and once (FMAD), in every rounding mode,
// with ordinary numbers and with those at the edges of the format: subnormals, overflow, infinities and NaNs.
#include "floating_point.h"

#define TWICE(a, x, y) ((a) * (x) + (y))

#define AXPY(name, kind, number, multiply_add)                                                        \
  static kind void name(number* restrict out, number a, const number* x, const number* y, size_t n) { \
    for (size_t i = 0; i < n; ++i) out[i] = multiply_add(a, x[i], y[i]);                              \
  }

#define TEST(number, fused)                                                            \
  AXPY(number##_axpy, VECTOR, number, TWICE)                                           \
  AXPY(number##_axpy_scalar, SCALAR, number, TWICE)                                    \
  AXPY(number##_fused_axpy, VECTOR, number, fused)                                     \
  AXPY(number##_fused_axpy_scalar, SCALAR, number, fused)                              \
  static void number##_each(bool finite, const number* x, const number* y, size_t n) { \
    static number out[LARGEST_TEST_SIZE], judged[LARGEST_TEST_SIZE];                   \
    COMPARE(number##_axpy, finite, out, judged, n, (number)-1.1, x, y, n);             \
    COMPARE(number##_fused_axpy, finite, out, judged, n, (number)0.7, x, y, n);        \
  }                                                                                    \
  static void number##_test(void) {                                                    \
    static number x[LARGEST_TEST_SIZE], y[LARGEST_TEST_SIZE];                          \
    fill_numbers(x, sizeof *x, LARGEST_TEST_SIZE, -4, 4);                              \
    fill_numbers(y, sizeof *y, LARGEST_TEST_SIZE, -4, 4);                              \
    for (size_t i = 0; i < TEST_SIZES; ++i) number##_each(true, x, y, test_sizes[i]);  \
    for (int mode = 0; mode < ROUNDING_MODES; ++mode) {                                \
      fill_corners(x, sizeof *x, LARGEST_TEST_SIZE);                                   \
      fill_corners(y, sizeof *y, LARGEST_TEST_SIZE);                                   \
      set_rounding(mode);                                                              \
      number##_each(false, x, y, LARGEST_TEST_SIZE);                                   \
      set_rounding(NEAREST);                                                           \
    }                                                                                  \
  }
TEST(_Float16, __builtin_fmaf16)
TEST(float, __builtin_fmaf)
TEST(double, __builtin_fma)
#undef TEST
#undef AXPY
#undef TWICE

int main(void) {
  _Float16_test();
  float_test();
  double_test();
  return finish("saxpy");
}
