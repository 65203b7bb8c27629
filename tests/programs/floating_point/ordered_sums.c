// Sums and products in the order of their elements (FADDA), also under a condition, and greatest and least numbers
// (FMAXNMV, FMINNMV). With -ffast-math the sums are trees (FADDV).
#include "floating_point.h"

enum { N = LARGEST_TEST_SIZE };

#define SUM(name, kind, number)                                   \
  static kind void name(number* out, const number* a, size_t n) { \
    number total = *out;                                          \
    for (size_t i = 0; i < n; ++i) total += a[i];                 \
    *out = total;                                                 \
  }

#define CONDITIONAL(name, kind, number)                                     \
  static kind void name(number* out, const number* a, size_t n) {           \
    number total = *out;                                                    \
    for (size_t i = 0; i < n; ++i) total += a[i] > (number)0.25 ? a[i] : 0; \
    *out = total;                                                           \
  }

#define SPARSE(name, kind, number)                                \
  static kind void name(number* out, const number* a, size_t n) { \
    number total = *out;                                          \
    for (size_t i = 0; i < n; ++i) {                              \
      if (a[i] < 0) total += a[i] * a[i];                         \
    }                                                             \
    *out = total;                                                 \
  }

#define EXTREMES(name, kind, number, greatest, least)             \
  static kind void name(number* out, const number* a, size_t n) { \
    number most = out[0], fewest = out[0];                        \
    for (size_t i = 0; i < n; ++i) {                              \
      most = greatest(most, a[i]);                                \
      fewest = least(fewest, a[i]);                               \
    }                                                             \
    out[0] = most - fewest;                                       \
  }

// Each function sums up from what its result is before.
#define EACH(number, function, finite, n)                                          \
  do {                                                                             \
    number##_out = number##_judged = (number)0.1;                                  \
    COMPARE(function, finite, &number##_out, &number##_judged, 1, number##_in, n); \
  } while (0)

#define TEST(number, greatest, least)                                           \
  SUM(number##_sum, VECTOR, number)                                             \
  SUM(number##_sum_scalar, SCALAR, number)                                      \
  CONDITIONAL(number##_conditional, VECTOR, number)                             \
  CONDITIONAL(number##_conditional_scalar, SCALAR, number)                      \
  SPARSE(number##_sparse, VECTOR, number)                                       \
  SPARSE(number##_sparse_scalar, SCALAR, number)                                \
  EXTREMES(number##_extremes, VECTOR, number, greatest, least)                  \
  EXTREMES(number##_extremes_scalar, SCALAR, number, greatest, least)           \
  static number number##_in[N], number##_out, number##_judged;                  \
  static void number##_each(bool finite, size_t n) {                            \
    EACH(number, number##_sum, finite, n);                                      \
    EACH(number, number##_conditional, finite, n);                              \
    EACH(number, number##_sparse, finite, n);                                   \
    EACH(number, number##_extremes, finite, n);                                 \
  }                                                                             \
  static void number##_test(void) {                                             \
    fill_numbers(number##_in, sizeof(number), N, -1, 1);                        \
    for (size_t i = 0; i < TEST_SIZES; ++i) number##_each(true, test_sizes[i]); \
    for (int mode = 0; mode < ROUNDING_MODES; ++mode) {                         \
      set_rounding(mode);                                                       \
      number##_each(true, N);                                                   \
      set_rounding(NEAREST);                                                    \
    }                                                                           \
    for (size_t n = 1; n < 6; ++n) {                                            \
      fill_corners(number##_in, sizeof(number), n);                             \
      number##_each(false, n);                                                  \
    }                                                                           \
  }
TEST(_Float16, __builtin_fmaxf16, __builtin_fminf16)
TEST(float, __builtin_fmaxf, __builtin_fminf)
TEST(double, __builtin_fmax, __builtin_fmin)
#undef TEST
#undef EACH
#undef EXTREMES
#undef SPARSE
#undef CONDITIONAL
#undef SUM

int main(void) {
  _Float16_test();
  float_test();
  double_test();
  return finish("ordered_sums");
}
