// Sines by the trigonometric accelerators (FTSMUL, FTMAD, FTSSEL) in half, single and double precision, judged by the C
// library's.
#include <arm_sve.h>
#include <math.h>

#include "floating_point.h"

enum { N = LARGEST_TEST_SIZE };

// The angle less the nearest multiple of a quarter turn, whose number picks series and sign; HIGH + LOW is a quarter
// turn.
#define SINE(number, f, s, u, bits, HIGH, LOW)                                                      \
  static VECTOR void number##_sine(number* out, const number* angles, size_t n) {                   \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(number)) {                                     \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n);                                            \
      const sv##number x = svld1(pg, angles + i);                                                   \
      const sv##number turns = svrintn_x(pg, svmul_x(pg, x, (number)M_2_PI));                       \
      const sv##number near = svmls_x(pg, svmls_x(pg, x, turns, (number)HIGH), turns, (number)LOW); \
      const svuint##bits##_t quarter = svreinterpret_##u##_##s(svcvt_##s##_x(pg, turns));           \
      const sv##number square = svtsmul(near, quarter);                                             \
      sv##number sum = svdup_##f((number)0);                                                        \
      sum = svtmad(sum, square, 7);                                                                 \
      sum = svtmad(sum, square, 6);                                                                 \
      sum = svtmad(sum, square, 5);                                                                 \
      sum = svtmad(sum, square, 4);                                                                 \
      sum = svtmad(sum, square, 3);                                                                 \
      sum = svtmad(sum, square, 2);                                                                 \
      sum = svtmad(sum, square, 1);                                                                 \
      sum = svtmad(sum, square, 0);                                                                 \
      svst1(pg, out + i, svmul_x(pg, sum, svtssel(near, quarter)));                                 \
    }                                                                                               \
  }
SINE(float16_t, f16, s16, u16, 16, 1.5703125, 4.838e-4)
SINE(float32_t, f32, s32, u32, 32, 0x1.921fb6p+0, -0x1.777a5cp-25)
SINE(float64_t, f64, s64, u64, 64, 0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54)
#undef SINE

#define TEST(number, limit, units)                                                               \
  static void number##_test(void) {                                                              \
    static number angles[N], out[N], judged[N];                                                  \
    fill_numbers(angles, sizeof(number), N, -limit, limit);                                      \
    angles[0] = 0;                                                                               \
    for (size_t i = 0; i < N; ++i) judged[i] = (number)sin((double)angles[i]);                   \
    for (size_t i = 1; i < TEST_SIZES; i += 2) {                                                 \
      const size_t n = test_sizes[i];                                                            \
      take_status();                                                                             \
      number##_sine(out, angles, n);                                                             \
      print_results(#number, n, out, n * sizeof(number), take_status());                         \
      check_case(#number, n, close_numbers(out, judged, sizeof(number), n, units));              \
    }                                                                                            \
    static const int modes[] = {UPWARD, DOWNWARD, TOWARD_ZERO};                                  \
    for (size_t m = 0; m < sizeof modes / sizeof *modes; ++m) {                                  \
      set_rounding((uint64_t)modes[m]);                                                          \
      number##_sine(out, angles, N);                                                             \
      set_rounding(NEAREST);                                                                     \
      print_results(#number, N, out, sizeof out, take_status());                                 \
      check_case("in other modes", N, close_numbers(out, judged, sizeof(number), N, 2 * units)); \
      number corners[N];                                                                         \
      fill_corners(corners, sizeof(number), N);                                                  \
      take_status();                                                                             \
      number##_sine(out, corners, N);                                                            \
      print_results(#number " corners", N, out, sizeof out, take_status());                      \
    }                                                                                            \
  }
TEST(float16_t, 3, 4)
TEST(float32_t, 40, 2)
TEST(float64_t, 40, 2)
#undef TEST

int main(void) {
  float16_t_test();
  float32_t_test();
  float64_t_test();
  return finish("sine");
}
