// A fast Fourier transform by powers of two, of numbers that lie in pairs (LD2W, ST2W, FADD, FSUB, FMUL; FMLA and FNMLS
// with -ffast-math), judged by the scalar transform and by going there and back.
#include <math.h>

#include "floating_point.h"

enum { LONGEST = 512 };

// A stage that joins transforms of `width` numbers to ones of twice as many.
#define STAGE(name, kind, number)                                                                                    \
  static kind void name(number* restrict out, const number* restrict in, const number* restrict roots, size_t width, \
                        size_t count) {                                                                              \
    for (size_t j = 0; j < count; ++j) {                                                                             \
      const number re = roots[2 * j * width], im = roots[2 * j * width + 1];                                         \
      const number *first = in + 2 * j * width, *second = first + 2 * count * width;                                 \
      number *sum = out + 4 * j * width, *turned = sum + 2 * width;                                                  \
      for (size_t k = 0; k < width; ++k) {                                                                           \
        const number x = first[2 * k] - second[2 * k], y = first[2 * k + 1] - second[2 * k + 1];                     \
        sum[2 * k] = first[2 * k] + second[2 * k];                                                                   \
        sum[2 * k + 1] = first[2 * k + 1] + second[2 * k + 1];                                                       \
        turned[2 * k] = x * re - y * im;                                                                             \
        turned[2 * k + 1] = x * im + y * re;                                                                         \
      }                                                                                                              \
    }                                                                                                                \
  }

// Into `data`; `other` is room for as much. Sign is -1 there and 1 back, without the division by n.
#define TRANSFORM(name, stage, number)                                         \
  static void name(number* data, number* other, size_t n, double sign) {       \
    number roots[LONGEST], *from = data, *to = other;                          \
    for (size_t k = 0; k < n / 2; ++k) {                                       \
      roots[2 * k] = (number)cos(sign * 2 * M_PI * (double)k / (double)n);     \
      roots[2 * k + 1] = (number)sin(sign * 2 * M_PI * (double)k / (double)n); \
    }                                                                          \
    take_status();                                                             \
    for (size_t width = 1; width < n; width *= 2) {                            \
      stage(to, from, roots, width, n / 2 / width);                            \
      number* const last = to;                                                 \
      to = from;                                                               \
      from = last;                                                             \
    }                                                                          \
    for (size_t i = 0; from != data && i < 2 * n; ++i) data[i] = from[i];      \
  }

// Transforms of all lengths, there, beside the scalar ones, and back.
#define TEST(number)                                                                                 \
  STAGE(number##_stage, VECTOR, number)                                                              \
  STAGE(number##_stage_scalar, SCALAR, number)                                                       \
  TRANSFORM(number##_transform, number##_stage, number)                                              \
  TRANSFORM(number##_transform_scalar, number##_stage_scalar, number)                                \
  static void number##_test(void) {                                                                  \
    static number data[2 * LONGEST], original[2 * LONGEST], judged[2 * LONGEST], other[2 * LONGEST]; \
    fill_numbers(original, sizeof *data, 2 * LONGEST, -1, 1);                                        \
    for (size_t n = 1; n <= LONGEST; n *= 2) {                                                       \
      for (size_t i = 0; i < 2 * n; ++i) data[i] = judged[i] = original[i];                          \
      number##_transform(data, other, n, -1);                                                        \
      const uint32_t status = take_status();                                                         \
      number##_transform_scalar(judged, other, n, -1);                                               \
      compare_results(#number, true, sizeof *data, 2 * n, data, status, judged, take_status());      \
      number##_transform(data, other, n, 1);                                                         \
      for (size_t i = 0; i < 2 * n; ++i) data[i] /= (number)n;                                       \
      check_case("there and back", n, close_numbers(data, original, sizeof *data, 2 * n, 16));       \
    }                                                                                                \
  }
TEST(float)
TEST(double)
#undef TEST
#undef TRANSFORM
#undef STAGE

int main(void) {
  float_test();
  double_test();
  return finish("fourier_transform");
}
