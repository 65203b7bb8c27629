// Arithmetic on elements in half precision, and in single and double beside it, under predicates: each operation is
// judged by the processor's scalar instruction, under all controls of FPCR, for ordinary numbers and for those at the
// edges of the format. FMULX, FABD, FMAXNM, FRINTA, FRECPX, FSCALE, FNMLA, FNMSB, FACGT, FCMUO and FADDV are among
// them.
#include <math.h>
#include <string.h>

#include "floating_point.h"
#include "vectors.h"

static mask_bytes mask;

// How a scalar instruction names registers of a format. None may run but where it stands: it would leave its status.
#define LETTER__Float16 "h"
#define LETTER_float "s"
#define LETTER_double "d"

#define ONE(number, text, x)                                                                      \
  ({                                                                                              \
    number one_;                                                                                  \
    __asm__ volatile(text " %" LETTER_##number "0, %" LETTER_##number "1" : "=w"(one_) : "w"(x)); \
    one_;                                                                                         \
  })
#define TWO(number, text, x, y)                                                                  \
  ({                                                                                             \
    number two_;                                                                                 \
    __asm__ volatile(text " %" LETTER_##number "0, %" LETTER_##number "1, %" LETTER_##number "2" \
                     : "=w"(two_)                                                                \
                     : "w"(x), "w"(y));                                                          \
    two_;                                                                                        \
  })
#define THREE(number, text, x, y, z)                                                                                \
  ({                                                                                                                \
    number three_;                                                                                                  \
    __asm__ volatile(text " %" LETTER_##number "0, %" LETTER_##number "1, %" LETTER_##number "2, %" LETTER_##number \
                     "3"                                                                                            \
                     : "=w"(three_)                                                                                 \
                     : "w"(x), "w"(y), "w"(z));                                                                     \
    three_;                                                                                                         \
  })
// A comparison's result is all ones or all zeros.
#define HOLDS(number, text, x, y)                  \
  ({                                               \
    const number holds_ = TWO(number, text, x, y); \
    uint64_t bits_ = 0;                            \
    memcpy(&bits_, &holds_, sizeof holds_);        \
    bits_ != 0;                                    \
  })

// EACH(name, vector of a, b and c under pg, element of x, y and z), where inactive elements are a's.
#define OPERATIONS(EACH, n)                                                                           \
  EACH(n, sqrt, svsqrt_m(a, pg, b), ONE(n, "fsqrt", y))                                               \
  EACH(n, abs, svabs_m(a, pg, b), ONE(n, "fabs", y))                                                  \
  EACH(n, neg, svneg_m(a, pg, b), ONE(n, "fneg", y))                                                  \
  EACH(n, recpx, svrecpx_m(a, pg, b), ONE(n, "frecpx", y))                                            \
  EACH(n, rinta, svrinta_m(a, pg, b), ONE(n, "frinta", y))                                            \
  EACH(n, rinti, svrinti_m(a, pg, b), ONE(n, "frinti", y))                                            \
  EACH(n, rintm, svrintm_m(a, pg, b), ONE(n, "frintm", y))                                            \
  EACH(n, rintn, svrintn_m(a, pg, b), ONE(n, "frintn", y))                                            \
  EACH(n, rintp, svrintp_m(a, pg, b), ONE(n, "frintp", y))                                            \
  EACH(n, rintx, svrintx_m(a, pg, b), ONE(n, "frintx", y))                                            \
  EACH(n, rintz, svrintz_m(a, pg, b), ONE(n, "frintz", y))                                            \
  EACH(n, add, svadd_m(pg, a, b), TWO(n, "fadd", x, y))                                               \
  EACH(n, sub, svsub_m(pg, a, b), TWO(n, "fsub", x, y))                                               \
  EACH(n, subr, svsubr_m(pg, a, b), TWO(n, "fsub", y, x))                                             \
  EACH(n, mul, svmul_m(pg, a, b), TWO(n, "fmul", x, y))                                               \
  EACH(n, div, svdiv_m(pg, a, b), TWO(n, "fdiv", x, y))                                               \
  EACH(n, divr, svdivr_m(pg, a, b), TWO(n, "fdiv", y, x))                                             \
  EACH(n, max, svmax_m(pg, a, b), TWO(n, "fmax", x, y))                                               \
  EACH(n, min, svmin_m(pg, a, b), TWO(n, "fmin", x, y))                                               \
  EACH(n, maxnm, svmaxnm_m(pg, a, b), TWO(n, "fmaxnm", x, y))                                         \
  EACH(n, minnm, svminnm_m(pg, a, b), TWO(n, "fminnm", x, y))                                         \
  EACH(n, abd, svabd_m(pg, a, b), TWO(n, "fabd", x, y))                                               \
  EACH(n, mulx, svmulx_m(pg, a, b), TWO(n, "fmulx", x, y))                                            \
  EACH(n, add_half, svadd_m(pg, a, 0.5), TWO(n, "fadd", x, (n)0.5))                                   \
  EACH(n, sub_one, svsub_m(pg, a, 1), TWO(n, "fsub", x, (n)1))                                        \
  EACH(n, subr_half, svsubr_m(pg, a, 0.5), TWO(n, "fsub", (n)0.5, x))                                 \
  EACH(n, mul_two, svmul_m(pg, a, 2), TWO(n, "fmul", x, (n)2))                                        \
  EACH(n, max_zero, svmax_m(pg, a, 0), TWO(n, "fmax", x, (n)0))                                       \
  EACH(n, min_one, svmin_m(pg, a, 1), TWO(n, "fmin", x, (n)1))                                        \
  EACH(n, maxnm_one, svmaxnm_m(pg, a, 1), TWO(n, "fmaxnm", x, (n)1))                                  \
  EACH(n, minnm_zero, svminnm_m(pg, a, 0), TWO(n, "fminnm", x, (n)0))                                 \
  EACH(n, mla, svmla_m(pg, a, b, c), THREE(n, "fmadd", y, z, x))                                      \
  EACH(n, mls, svmls_m(pg, a, b, c), THREE(n, "fmsub", y, z, x))                                      \
  EACH(n, nmla, svnmla_m(pg, a, b, c), THREE(n, "fnmadd", y, z, x))                                   \
  EACH(n, nmls, svnmls_m(pg, a, b, c), THREE(n, "fnmsub", y, z, x))                                   \
  EACH(n, mad, svmad_m(pg, a, b, c), THREE(n, "fmadd", x, y, z))                                      \
  EACH(n, msb, svmsb_m(pg, a, b, c), THREE(n, "fmsub", x, y, z))                                      \
  EACH(n, nmad, svnmad_m(pg, a, b, c), THREE(n, "fnmadd", x, y, z))                                   \
  EACH(n, nmsb, svnmsb_m(pg, a, b, c), THREE(n, "fnmsub", x, y, z))                                   \
  EACH(n, cmpeq, CHOSEN(cmpeq(pg, a, b)), HOLDS(n, "fcmeq", x, y) ? z : x)                            \
  EACH(n, cmpne, CHOSEN(cmpne(pg, a, b)), HOLDS(n, "fcmeq", x, y) ? x : z)                            \
  EACH(n, cmpge, CHOSEN(cmpge(pg, a, b)), HOLDS(n, "fcmge", x, y) ? z : x)                            \
  EACH(n, cmpgt, CHOSEN(cmpgt(pg, a, b)), HOLDS(n, "fcmgt", x, y) ? z : x)                            \
  EACH(n, cmplt_zero, CHOSEN(cmplt(pg, a, 0)), HOLDS(n, "fcmgt", (n)0, x) ? z : x)                    \
  EACH(n, cmple_zero, CHOSEN(cmple(pg, a, 0)), HOLDS(n, "fcmge", (n)0, x) ? z : x)                    \
  EACH(n, cmpne_zero, CHOSEN(cmpne(pg, a, 0)), HOLDS(n, "fcmeq", x, (n)0) ? x : z)                    \
  EACH(n, acge, CHOSEN(acge(pg, a, b)), HOLDS(n, "facge", x, y) ? z : x)                              \
  EACH(n, acgt, CHOSEN(acgt(pg, a, b)), HOLDS(n, "facgt", x, y) ? z : x)                              \
  EACH(n, cmpuo, CHOSEN(cmpuo(pg, a, b)), HOLDS(n, "fcmeq", x, x) && HOLDS(n, "fcmeq", y, y) ? x : z) \
  EACH(n, scale, svscale_m(pg, a, AS_INTEGERS(n, b)), SCALED(n, x, y))

// Modes, flushing and default NaNs.
enum { ALL_CONTROLS = 3 * CONTROL_MODE | CONTROL_FZ | CONTROL_DN | CONTROL_FZ16 };

// What a comparison chooses shows it.
#define CHOSEN(comparison) svsel(sv##comparison, c, a)

#define AS_INTEGERS(number, v) AS_INTEGERS_##number(v)
#define AS_INTEGERS__Float16 svreinterpret_s16
#define AS_INTEGERS_float svreinterpret_s32
#define AS_INTEGERS_double svreinterpret_s64

// A product with a power of two; those beyond 5000 give the same. FZ16 flushes the half that goes in and the half that
// comes out, and conversions don't heed it.
static bool flushes_halves;
#define SCALED(number, x, exponent)                                                             \
  ({                                                                                            \
    const number from_ = exponent;                                                              \
    int64_t power_ = 0;                                                                         \
    memcpy(&power_, &from_, sizeof from_);                                                      \
    power_ = (int64_t)((uint64_t)power_ << (64 - 8 * sizeof from_)) >> (64 - 8 * sizeof from_); \
    power_ = power_ > 5000 ? 5000 : power_ < -5000 ? -5000 : power_;                            \
    const double wide_ = scalbn((double)TWO(number, "fmul", x, (number)1), (int)power_);        \
    const bool small_ = sizeof from_ == 2 && isless(fabs(wide_), 0x1p-14);                      \
    (number)(small_ && flushes_halves ? copysign(0, wide_) : wide_);                            \
  })

// Neighbours join first, then pairs; what is inactive counts as the identity.
#define TREES(TREE, n)                         \
  TREE(n, addv, "fadd", 0)                     \
  TREE(n, maxv, "fmax", -__builtin_inf())      \
  TREE(n, minv, "fmin", __builtin_inf())       \
  TREE(n, maxnmv, "fmaxnm", __builtin_nan("")) \
  TREE(n, minnmv, "fminnm", __builtin_nan(""))

#define OPERATION(number, name, vector, element)                                                                 \
  static VECTOR void number##_##name(number* out, const number* in, const number* second, const number* third) { \
    const svbool_t pg = predicate_of(mask), all = svptrue_b8();                                                  \
    const __auto_type a = LOAD(all, in);                                                                         \
    const __auto_type b = LOAD(all, second);                                                                     \
    const __auto_type c = LOAD(all, third);                                                                      \
    (void)b, (void)c;                                                                                            \
    STORE(all, out, vector);                                                                                     \
  }                                                                                                              \
  static SCALAR void number##_##name##_scalar(number* out, const number* in, const number* second,               \
                                              const number* third) {                                             \
    for (size_t i = 0; i < svcntb() / sizeof(number); ++i) {                                                     \
      const number x = in[i], y = second[i], z = third[i];                                                       \
      (void)y, (void)z;                                                                                          \
      out[i] = mask[i * sizeof(number)] ? (element) : x;                                                         \
    }                                                                                                            \
  }

#define TREE(number, name, text, identity)                                                                 \
  static VECTOR void number##_##name(number* out, const number* in) {                                      \
    *out = (number)sv##name(predicate_of(mask), LOAD(svptrue_b8(), in));                                   \
  }                                                                                                        \
  static SCALAR void number##_##name##_scalar(number* out, const number* in) {                             \
    size_t lanes = svcntb() / sizeof(number);                                                              \
    number level[VECTOR_BYTES / sizeof(number)];                                                           \
    for (size_t i = 0; i < lanes; ++i) level[i] = mask[i * sizeof(number)] ? in[i] : (number)(identity);   \
    for (; lanes > 1; lanes /= 2) {                                                                        \
      for (size_t i = 0; i < lanes / 2; ++i) level[i] = TWO(number, text, level[2 * i], level[2 * i + 1]); \
    }                                                                                                      \
    *out = level[0];                                                                                       \
  }

#define CALL(number, name, ...) COMPARE(number##_##name, true, out, judged, lanes, a, b, c);
#define CALL_TREE(number, name, ...) COMPARE(number##_##name, true, out, judged, 1, a);

#define TEST(number)                                                                                               \
  OPERATIONS(OPERATION, number)                                                                                    \
  TREES(TREE, number)                                                                                              \
  static void number##_each(const number* a, const number* b, const number* c) {                                   \
    static number out[VECTOR_BYTES / sizeof(number)], judged[VECTOR_BYTES / sizeof(number)];                       \
    const size_t lanes = svcntb() / sizeof(number);                                                                \
    OPERATIONS(CALL, number)                                                                                       \
    TREES(CALL_TREE, number)                                                                                       \
  }                                                                                                                \
  static void number##_run(int pattern, uint64_t controls) {                                                       \
    static number numbers[3][VECTOR_BYTES / sizeof(number)];                                                       \
    const size_t count = VECTOR_BYTES / sizeof(number);                                                            \
    fill_mask(mask, sizeof(number), pattern);                                                                      \
    for (size_t i = 0; i < 3; ++i) {                                                                               \
      if (pattern % 2 == 0) fill_numbers(numbers[i], sizeof(number), count, -9, 9);                                \
      if (pattern % 2 != 0) fill_corners(numbers[i], sizeof(number), count);                                       \
      if (pattern == MASKS - 1) put_nans(numbers[i], sizeof(number), count);                                       \
    }                                                                                                              \
    printf("controls %08llx\n", (unsigned long long)controls);                                                     \
    flushes_halves = controls & CONTROL_FZ16;                                                                      \
    set_controls(ALL_CONTROLS, controls);                                                                          \
    number##_each(numbers[0], numbers[1], numbers[2]);                                                             \
    set_controls(ALL_CONTROLS, 0);                                                                                 \
  }                                                                                                                \
  static void number##_test(void) {                                                                                \
    for (int pattern = NONE; pattern < MASKS; ++pattern) number##_run(pattern, 0);                                 \
    for (uint64_t control = 0; control < 16; ++control) {                                                          \
      const uint64_t controls = control * CONTROL_MODE | (control * CONTROL_MODE & CONTROL_FZ ? CONTROL_FZ16 : 0); \
      number##_run(MASKS - 2, controls);                                                                           \
      number##_run(MASKS - 1, controls);                                                                           \
    }                                                                                                              \
  }
TEST(_Float16)
TEST(float)
TEST(double)

int main(void) {
  _Float16_test();
  float_test();
  double_test();
  return finish("float_operations");
}
