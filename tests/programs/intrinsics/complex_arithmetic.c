// Complex sums with a rotated side (FCADD), multiply-adds of all four rotations (FCMLA), by one pair of each 128 bits
// too, and products and conjugate products of them. Odd numbers of elements leave the last pair its real part only.
#include "floating_point.h"
#include "vectors.h"

enum { N = LARGEST_TEST_SIZE };

// Elements beyond the end load as zeros.
#define AT(array, i, n) ((i) < (n) ? (array)[i] : 0)

// Negation by itself, as the instructions have it, which the compiler may not turn into a difference.
#define NEGATED(number, x, negative)           \
  ({                                           \
    number negated_ = (negative) ? -(x) : (x); \
    __asm__("" : "+w"(negated_));              \
    negated_;                                  \
  })

// a + x y by an instruction: the compiler would take the liberty to exchange x and y, and with them two NaNs.
#define FUSED(number, letter)                                                                                    \
  static inline number number##_fused(number x, number y, number a) {                                            \
    __asm__ volatile("fmadd %" letter "0, %" letter "1, %" letter "2, %" letter "0" : "+w"(a) : "w"(x), "w"(y)); \
    return a;                                                                                                    \
  }
FUSED(_Float16, "h")
FUSED(float, "s")
FUSED(double, "d")
#undef FUSED

#define SUM(number, bits, rotation)                                                                              \
  static VECTOR void number##_sum_##rotation(number* out, const number* a, const number* b, size_t n) {          \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(number)) {                                                  \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n);                                                         \
      STORE(pg, out + i, svcadd_x(pg, LOAD(pg, a + i), LOAD(pg, b + i), rotation));                              \
    }                                                                                                            \
  }                                                                                                              \
  static SCALAR void number##_sum_##rotation##_scalar(number* out, const number* a, const number* b, size_t n) { \
    for (size_t i = 0; i < n; ++i) {                                                                             \
      const bool odd = i % 2;                                                                                    \
      out[i] = a[i] + NEGATED(number, AT(b, i ^ 1, n), odd == (rotation == 270));                                \
    }                                                                                                            \
  }

// The multiply-add of element i, whose pair of the right side begins at b[pair].
#define MULTIPLY_ADD(number, out, a, b, i, pair, n, rotation)                               \
  do {                                                                                      \
    const bool odd = (i) % 2, turned = rotation % 180;                                      \
    const bool negative = rotation == 180 || (turned && odd == (rotation == 270));          \
    const number x = AT(a, (i) / 2 * 2 + turned, n), y = AT(b, (pair) + (odd ^ turned), n); \
    out[i] = number##_fused(x, NEGATED(number, y, negative), out[i]);                       \
  } while (0)

#define PRODUCT(number, bits, rotation)                                                                              \
  static VECTOR void number##_product_##rotation(number* out, const number* a, const number* b, size_t n) {          \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(number)) {                                                      \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n);                                                             \
      STORE(pg, out + i, svcmla_m(pg, LOAD(pg, out + i), LOAD(pg, a + i), LOAD(pg, b + i), rotation));               \
    }                                                                                                                \
  }                                                                                                                  \
  static SCALAR void number##_product_##rotation##_scalar(number* out, const number* a, const number* b, size_t n) { \
    for (size_t i = 0; i < n; ++i) MULTIPLY_ADD(number, out, a, b, i, i / 2 * 2, n, rotation);                       \
  }

#define BY_LANE(number, bits, lane, rotation)                                                                        \
  static VECTOR void number##_by_lane_##rotation(number* out, const number* a, const number* b, size_t n) {          \
    for (size_t i = 0; i < n; i += svcntb() / sizeof(number)) {                                                      \
      const svbool_t pg = svwhilelt_b##bits##_u64(i, n);                                                             \
      STORE(pg, out + i, svcmla_lane(LOAD(pg, out + i), LOAD(pg, a + i), LOAD(pg, b + i), lane, rotation));          \
    }                                                                                                                \
  }                                                                                                                  \
  static SCALAR void number##_by_lane_##rotation##_scalar(number* out, const number* a, const number* b, size_t n) { \
    const size_t segment = 16 / sizeof(number);                                                                      \
    for (size_t i = 0; i < n; ++i) {                                                                                 \
      MULTIPLY_ADD(number, out, a, b, i, i / segment * segment + 2 * lane, n, rotation);                             \
    }                                                                                                                \
  }

#define ALL_ROTATIONS(family, ...) \
  family(__VA_ARGS__, 0) family(__VA_ARGS__, 90) family(__VA_ARGS__, 180) family(__VA_ARGS__, 270)

#define ARRAYS(number) static number number##_a[N], number##_b[N], number##_out[N], number##_judged[N]

// A sum over what both results hold before.
#define EACH(number, function, finite, n)                                                              \
  do {                                                                                                 \
    for (size_t i = 0; i < N; ++i) number##_out[i] = number##_judged[i] = number##_b[N - 1 - i];       \
    COMPARE(number##_##function, finite, number##_out, number##_judged, n, number##_a, number##_b, n); \
  } while (0)

#define TEST_ALL(number, lanes)                                                    \
  static void number##_each(bool finite, size_t n) {                               \
    EACH(number, sum_90, finite, n);                                               \
    EACH(number, sum_270, finite, n);                                              \
    EACH(number, product_0, finite, n);                                            \
    EACH(number, product_90, finite, n);                                           \
    EACH(number, product_180, finite, n);                                          \
    EACH(number, product_270, finite, n);                                          \
    lanes(number, finite, n);                                                      \
  }                                                                                \
  static void number##_test(void) {                                                \
    fill_numbers(number##_a, sizeof(number), N, -2, 2);                            \
    fill_numbers(number##_b, sizeof(number), N, -2, 2);                            \
    for (size_t i = 0; i < TEST_SIZES; i += 4) number##_each(true, test_sizes[i]); \
    for (int mode = 0; mode < ROUNDING_MODES; ++mode) {                            \
      fill_corners(number##_a, sizeof(number), N);                                 \
      fill_corners(number##_b, sizeof(number), N);                                 \
      set_rounding((uint64_t)mode);                                                \
      number##_each(false, N);                                                     \
      set_rounding(NEAREST);                                                       \
    }                                                                              \
  }

#define WITH_LANES(number, finite, n)   \
  EACH(number, by_lane_0, finite, n);   \
  EACH(number, by_lane_90, finite, n);  \
  EACH(number, by_lane_180, finite, n); \
  EACH(number, by_lane_270, finite, n)
#define WITHOUT_LANES(number, finite, n)

#define FORMAT(number, bits) \
  ARRAYS(number);            \
  SUM(number, bits, 90)      \
  SUM(number, bits, 270)     \
  ALL_ROTATIONS(PRODUCT, number, bits)

FORMAT(_Float16, 16)
ALL_ROTATIONS(BY_LANE, _Float16, 16, 3)
TEST_ALL(_Float16, WITH_LANES)
FORMAT(float, 32)
ALL_ROTATIONS(BY_LANE, float, 32, 1)
TEST_ALL(float, WITH_LANES)
FORMAT(double, 64)
TEST_ALL(double, WITHOUT_LANES)

// (1 + 2i) (3 + 4i) = -5 + 10i; the conjugate's product is (1 - 2i) (3 + 4i) = 11 - 2i.
static void known_products(void) {
  const double a[2] = {1, 2}, b[2] = {3, 4};
  double product[2] = {0, 0}, conjugate[2] = {0, 0};
  double_product_0(product, a, b, 2);
  double_product_90(product, a, b, 2);
  double_product_0(conjugate, a, b, 2);
  double_product_270(conjugate, a, b, 2);
  check("product", product[0] == -5 && product[1] == 10);
  check("product of the conjugate", conjugate[0] == 11 && conjugate[1] == -2);
}

int main(void) {
  _Float16_test();
  float_test();
  double_test();
  known_products();
  return finish("complex_arithmetic");
}
