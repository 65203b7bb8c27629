// Exponentials by the accelerator (FEXPA) and a short series, in half, single and double precision, judged by the C
// library's.
#include <arm_sve.h>
#include <math.h>

#include "floating_point.h"

enum { N = LARGEST_TEST_SIZE };

// e^x is 2^(k / STEPS) e^r with the nearest k; FEXPA takes k with the exponent's bias. HIGH + LOW is ln 2 / STEPS.
#define EXPONENTIAL(number, f, s, u, bits, STEPS, bias, HIGH, LOW)                           \
  static VECTOR void number##_exponential(number* out, const number* in, size_t n) {         \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(number)) {                              \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n);                                     \
      const sv##number x = svld1(pg, in + i);                                                \
      const sv##number k = svrinta_x(pg, svmul_x(pg, x, (number)(STEPS * M_LOG2E)));         \
      const sv##number r = svmls_x(pg, svmls_x(pg, x, k, (number)(HIGH)), k, (number)(LOW)); \
      const svint##bits##_t power = svadd_x(pg, svcvt_##s##_x(pg, k), STEPS * bias);         \
      const sv##number scale = svexpa(svreinterpret_##u##_##s(power));                       \
      sv##number sum = svmad_x(pg, r, svdup_##f((number)(1.0 / 120)), (number)(1.0 / 24));   \
      sum = svmad_x(pg, sum, r, (number)(1.0 / 6));                                          \
      sum = svmad_x(pg, sum, r, (number)0.5);                                                \
      sum = svmad_x(pg, sum, r, (number)1);                                                  \
      svst1(pg, out + i, svmla_x(pg, scale, svmul_x(pg, scale, r), sum));                    \
    }                                                                                        \
  }
EXPONENTIAL(float16_t, f16, s16, u16, 16, 32, 15, 0x1.62p-6, 0x1.c84p-15)
EXPONENTIAL(float32_t, f32, s32, u32, 32, 64, 127, 0x1.62ep-7, 0x1.0bfbe8p-21)
EXPONENTIAL(float64_t, f64, s64, u64, 64, 64, 1023, 0x1.62e42fefap-7, 0x1.cf79abc9e3b3ap-46)
#undef EXPONENTIAL

#define TEST(number, least, most, units)                                                               \
  static void number##_test(void) {                                                                    \
    static number in[N], out[N], quotients[N], ones[N];                                                \
    fill_numbers(in, sizeof(number), N, least, most);                                                  \
    in[0] = 0;                                                                                         \
    for (size_t i = 0; i < N; ++i) ones[i] = 1;                                                        \
    for (size_t i = 1; i < TEST_SIZES; i += 2) {                                                       \
      const size_t n = test_sizes[i];                                                                  \
      take_status();                                                                                   \
      number##_exponential(out, in, n);                                                                \
      print_results(#number, n, out, n * sizeof(number), take_status());                               \
      for (size_t k = 0; k < n; ++k) quotients[k] = (number)((double)out[k] / exp((double)in[k]));     \
      check_case(#number, n, out[0] == 1 && close_numbers(quotients, ones, sizeof(number), n, units)); \
    }                                                                                                  \
  }
TEST(float16_t, -9, 10, 2)
TEST(float32_t, -80, 80, 2)
TEST(float64_t, -600, 600, 2)
#undef TEST

int main(void) {
  float16_t_test();
  float32_t_test();
  float64_t_test();
  return finish("exponential");
}
