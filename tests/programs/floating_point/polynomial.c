// A quotient of two polynomials between limits, and its distance from where it is taken, in half, single and double
// precision: FMUL, FADD, FDIV, FCMGT, FCMEQ, FNEG and SEL; FMAD, FMAXNM, FMINNM and FABS with -ffast-math.
#include "floating_point.h"

#define POLYNOMIALS(name, kind, number)                                                                        \
  static kind void name(number* restrict out, const number* restrict x, number least, number most, size_t n) { \
    for (size_t i = 0; i < n; ++i) {                                                                           \
      number at = x[i];                                                                                        \
      if (at < least) at = least;                                                                              \
      if (at > most) at = most;                                                                                \
      number top = (number)0.03125;                                                                            \
      top = top * at - (number)0.1;                                                                            \
      top = top * at + (number)0.7;                                                                            \
      top = top * at - 1;                                                                                      \
      const number bottom = (number)0.2 * at * at + (number)0.3;                                               \
      const number quotient = top / bottom, distance = quotient - x[i];                                        \
      out[i] = x[i] != 0 ? quotient : distance < 0 ? -distance : distance;                                     \
    }                                                                                                          \
  }

#define TEST(number)                                                                                               \
  POLYNOMIALS(number##_polynomials, VECTOR, number)                                                                \
  POLYNOMIALS(number##_polynomials_scalar, SCALAR, number)                                                         \
  static void number##_test(void) {                                                                                \
    static number x[LARGEST_TEST_SIZE], out[LARGEST_TEST_SIZE], judged[LARGEST_TEST_SIZE];                         \
    fill_numbers(x, sizeof *x, LARGEST_TEST_SIZE, -3, 3);                                                          \
    for (size_t i = 0; i < TEST_SIZES; ++i) {                                                                      \
      COMPARE(number##_polynomials, true, out, judged, test_sizes[i], x, -2, (number)2.5, test_sizes[i]);          \
    }                                                                                                              \
    for (int mode = 0; mode < ROUNDING_MODES; ++mode) {                                                            \
      fill_corners(x, sizeof *x, LARGEST_TEST_SIZE);                                                               \
      set_rounding(mode);                                                                                          \
      COMPARE(number##_polynomials, false, out, judged, LARGEST_TEST_SIZE, x, -2, (number)2.5, LARGEST_TEST_SIZE); \
      set_rounding(NEAREST);                                                                                       \
    }                                                                                                              \
  }
TEST(_Float16)
TEST(float)
TEST(double)
#undef TEST
#undef POLYNOMIALS

int main(void) {
  _Float16_test();
  float_test();
  double_test();
  return finish("polynomial");
}
