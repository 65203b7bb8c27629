// Quotients and inverse square roots from estimates (FRECPE, FRSQRTE) by Newton's steps (FRECPS, FRSQRTS) in half,
// single and double precision, judged by division and square root, and the estimates and steps at the edges of the
// formats.
#include <arm_sve.h>
#include <math.h>

#include "floating_point.h"

enum { N = LARGEST_TEST_SIZE };

#define STEPS(number, bits)                                                                       \
  static VECTOR void number##_reciprocals(number* out, const number* in, size_t n, int steps) {   \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(number)) {                                   \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n);                                          \
      const sv##number x = svld1(pg, in + i);                                                     \
      sv##number estimate = svrecpe(x);                                                           \
      for (int s = 0; s < steps; ++s) estimate = svmul_x(pg, estimate, svrecps(x, estimate));     \
      svst1(pg, out + i, estimate);                                                               \
    }                                                                                             \
  }                                                                                               \
  static VECTOR void number##_inverse_roots(number* out, const number* in, size_t n, int steps) { \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(number)) {                                   \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n);                                          \
      const sv##number x = svld1(pg, in + i);                                                     \
      sv##number estimate = svrsqrte(x);                                                          \
      for (int s = 0; s < steps; ++s) {                                                           \
        const sv##number product = svmul_x(pg, x, estimate);                                      \
        estimate = svmul_x(pg, estimate, svrsqrts(product, estimate));                            \
      }                                                                                           \
      svst1(pg, out + i, estimate);                                                               \
    }                                                                                             \
  }

// Estimates have 8 bits, which each step doubles.
#define TEST(number, bits, full)                                                                         \
  STEPS(number, bits)                                                                                    \
  static void number##_test(void) {                                                                      \
    static number in[N], out[N], reciprocals[N], roots[N];                                               \
    fill_numbers(in, sizeof(number), N, 0.5, 20);                                                        \
    for (size_t i = 0; i < N; ++i) {                                                                     \
      reciprocals[i] = (number)(1 / (double)in[i]);                                                      \
      roots[i] = (number)(1 / sqrt((double)in[i]));                                                      \
    }                                                                                                    \
    for (int steps = 0; steps <= full; ++steps) {                                                        \
      for (int mode = 0; mode < ROUNDING_MODES; ++mode) {                                                \
        const double error = steps == full ? 4 : ldexp(4, fraction_bits(sizeof(number)) - (8 << steps)); \
        set_rounding((uint64_t)mode);                                                                    \
        take_status();                                                                                   \
        number##_reciprocals(out, in, N, steps);                                                         \
        print_results(#number " reciprocals", N, out, sizeof out, take_status());                        \
        const bool right = close_numbers(out, reciprocals, sizeof(number), N, error);                    \
        number##_inverse_roots(out, in, N, steps);                                                       \
        print_results(#number " inverse roots", N, out, sizeof out, take_status());                      \
        set_rounding(NEAREST);                                                                           \
        check_case(#number " reciprocals after steps", (size_t)steps, right);                            \
        check_case(#number " inverse roots after steps", (size_t)steps,                                  \
                   close_numbers(out, roots, sizeof(number), N, error));                                 \
        number corners[N];                                                                               \
        fill_corners(corners, sizeof(number), N);                                                        \
        set_rounding((uint64_t)mode);                                                                    \
        take_status();                                                                                   \
        number##_reciprocals(out, corners, N, steps);                                                    \
        print_results(#number " reciprocals at the edges", N, out, sizeof out, take_status());           \
        number##_inverse_roots(out, corners, N, steps);                                                  \
        print_results(#number " inverse roots at the edges", N, out, sizeof out, take_status());         \
        set_rounding(NEAREST);                                                                           \
      }                                                                                                  \
    }                                                                                                    \
  }
TEST(float16_t, 16, 1)
TEST(float32_t, 32, 2)
TEST(float64_t, 64, 3)
#undef TEST
#undef STEPS

int main(void) {
  float16_t_test();
  float32_t_test();
  float64_t_test();
  return finish("newton_steps");
}
