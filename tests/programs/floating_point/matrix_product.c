// Products of matrices by rows (FMUL and FADD, or FMAD with -ffast-math), and by rows and the columns of the right side
// (FADDA, or FMLA and FADDV with -ffast-math).
#include "floating_point.h"

enum { ROWS = 9, INNER = 35, COLUMNS = 150 };

#define BY_ROWS(name, kind, number)                                                                         \
  static kind void name(number* restrict out, const number* restrict a, const number* restrict b) {         \
    for (size_t i = 0; i < ROWS; ++i) {                                                                     \
      for (size_t j = 0; j < COLUMNS; ++j) out[i * COLUMNS + j] = 0;                                        \
      for (size_t k = 0; k < INNER; ++k) {                                                                  \
        for (size_t j = 0; j < COLUMNS; ++j) out[i * COLUMNS + j] += a[i * INNER + k] * b[k * COLUMNS + j]; \
      }                                                                                                     \
    }                                                                                                       \
  }

#define BY_COLUMNS(name, kind, number)                                                              \
  static kind void name(number* restrict out, const number* restrict a, const number* restrict b) { \
    for (size_t i = 0; i < ROWS; ++i) {                                                             \
      for (size_t j = 0; j < COLUMNS; ++j) {                                                        \
        number total = 0;                                                                           \
        for (size_t k = 0; k < INNER; ++k) total += a[i * INNER + k] * b[j * INNER + k];            \
        out[i * COLUMNS + j] = total;                                                               \
      }                                                                                             \
    }                                                                                               \
  }

enum { RESULTS = ROWS * COLUMNS };

#define TEST(number)                                                                  \
  BY_ROWS(number##_by_rows, VECTOR, number)                                           \
  BY_ROWS(number##_by_rows_scalar, SCALAR, number)                                    \
  BY_COLUMNS(number##_by_columns, VECTOR, number)                                     \
  BY_COLUMNS(number##_by_columns_scalar, SCALAR, number)                              \
  static void number##_test(void) {                                                   \
    static number a[ROWS * INNER], b[INNER * COLUMNS], out[RESULTS], judged[RESULTS]; \
    fill_numbers(a, sizeof *a, ROWS* INNER, -1, 1);                                   \
    fill_numbers(b, sizeof *b, INNER* COLUMNS, -1, 1);                                \
    COMPARE(number##_by_rows, true, out, judged, RESULTS, a, b);                      \
    COMPARE(number##_by_columns, true, out, judged, RESULTS, a, b);                   \
  }
TEST(_Float16)
TEST(float)
TEST(double)
#undef TEST
#undef BY_COLUMNS
#undef BY_ROWS

int main(void) {
  _Float16_test();
  float_test();
  double_test();
  return finish("matrix_product");
}
