// Dot products of floating-point numbers. In order they are FMUL and FADDA; with -ffast-math, FMLA and FADDV.
#include "floating_point.h"

#define DOT(name, kind, number, sum)                                            \
  static kind void name(sum* out, const number* a, const number* b, size_t n) { \
    sum total = 0;                                                              \
    for (size_t i = 0; i < n; ++i) total += (sum)a[i] * (sum)b[i];              \
    *out = total;                                                               \
  }
DOT(dot_half, VECTOR, _Float16, _Float16)
DOT(dot_half_scalar, SCALAR, _Float16, _Float16)
DOT(dot_single, VECTOR, float, float)
DOT(dot_single_scalar, SCALAR, float, float)
DOT(dot_double, VECTOR, double, double)
DOT(dot_double_scalar, SCALAR, double, double)
DOT(dot_widened, VECTOR, float, double)
DOT(dot_widened_scalar, SCALAR, float, double)
#undef DOT

enum { N = LARGEST_TEST_SIZE };
static _Float16 half_a[N], half_b[N];
static float single_a[N], single_b[N];
static double double_a[N], double_b[N];

static void products(bool finite, size_t n) {
  _Float16 half_out, half_judged;
  float single_out, single_judged;
  double double_out, double_judged;
  COMPARE(dot_half, finite, &half_out, &half_judged, 1, half_a, half_b, n);
  COMPARE(dot_single, finite, &single_out, &single_judged, 1, single_a, single_b, n);
  COMPARE(dot_double, finite, &double_out, &double_judged, 1, double_a, double_b, n);
  COMPARE(dot_widened, finite, &double_out, &double_judged, 1, single_a, single_b, n);
  printf("%zu elements: %a %a %a\n", n, (double)half_out, single_out, double_out);
}

int main(void) {
  fill_numbers(half_a, 2, N, -0.5, 0.5);
  fill_numbers(half_b, 2, N, 0, 0.5);
  fill_numbers(single_a, 4, N, -1, 1);
  fill_numbers(single_b, 4, N, 0, 1);
  fill_numbers(double_a, 8, N, -1, 1);
  fill_numbers(double_b, 8, N, 0, 1);
  for (size_t i = 0; i < TEST_SIZES; ++i) products(true, test_sizes[i]);
  for (int mode = UPWARD; mode < ROUNDING_MODES; ++mode) {
    set_rounding(mode);
    products(true, N);
    set_rounding(NEAREST);
  }
  // Sums of few numbers, which NaNs would soon drown.
  for (size_t n = 1; n < 6; ++n) {
    fill_corners(half_a, 2, N);
    fill_corners(single_a, 4, N);
    fill_corners(double_a, 8, N);
    products(false, n);
  }
  return finish("inner_product");
}
