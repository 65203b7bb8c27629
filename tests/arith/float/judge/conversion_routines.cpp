// The rows of the conversions, and of rounding to an integral value.
#include "sve/arith/float/convert.h"
#include "sve/arith/float/from_fixed.h"
#include "sve/arith/float/round_to_integral.h"
#include "sve/arith/float/to_fixed.h"
#include "tests/arith/float/judge/instruction.h"
#include "tests/arith/float/judge/tables.h"

namespace quern::judge {
namespace {

template <class From, class To>
To convert(From value, FPSCR& fpscr) {
  return FPConvert<From, To>(value, rounding_of(fpscr), fpscr);
}

// To odd, as FCVTXN does.
S convert_to_odd(D value, FPSCR& fpscr) { return FPConvert<D, S>(value, FPRounding_ODD, fpscr); }

template <class From, class To, bool u, FPRounding rounding, int fbits = 0>
To to_fixed(From value, FPSCR& fpscr) {
  return fplibFPToFixed<From, To>(value, fbits, u, rounding, fpscr);
}

template <class T, class Integer, bool u, int fbits>
T from_fixed(Integer value, FPSCR& fpscr) {
  using unsigned_integer = std::make_unsigned_t<Integer>;
  const auto wide =
      u ? std::uint64_t{static_cast<unsigned_integer>(value)} : static_cast<std::uint64_t>(std::int64_t{value});
  return fplibFixedToFP<T>(wide, fbits, u, rounding_of(fpscr), fpscr);
}

template <class T, FPRounding rounding>
T round_to_integral(T value, FPSCR& fpscr) {
  return FPRoundInt<T>(value, rounding, false, fpscr);
}

template <class T, bool exact>
T round_by_mode(T value, FPSCR& fpscr) {
  return FPRoundInt<T>(value, rounding_of(fpscr), exact, fpscr);
}

}  // namespace

#define EACH_FORMAT(row_of_format) row_of_format(H, h), row_of_format(S, s), row_of_format(D, d)

#define CONVERT(From, from, To, to) \
  row<convert<From, To>, From>("fcvt " #to ", " #from, PROCESSOR("fcvt " #to "0, " #from "1"))

// To a general register `r`9 of type To, or to an H register.
#define TO_REGISTER(From, f, To, r, u, rounding, mnemonic)            \
  row<to_fixed<From, To, u, rounding>, From>(mnemonic " " #r ", " #f, \
                                             PROCESSOR(mnemonic " " #r "9, " #f "1\n\tfmov d0, x9"))
#define TO_HALFWORD(u, rounding, mnemonic) \
  row<to_fixed<H, H, u, rounding>, H>(mnemonic " h, h", PROCESSOR(mnemonic " h0, h1"))
#define TO_FIXED(u, rounding, mnemonic)                                                               \
  TO_HALFWORD(u, rounding, mnemonic), TO_REGISTER(H, h, S, w, u, rounding, mnemonic),                 \
      TO_REGISTER(H, h, D, x, u, rounding, mnemonic), TO_REGISTER(S, s, S, w, u, rounding, mnemonic), \
      TO_REGISTER(S, s, D, x, u, rounding, mnemonic), TO_REGISTER(D, d, S, w, u, rounding, mnemonic), \
      TO_REGISTER(D, d, D, x, u, rounding, mnemonic)

// With fraction bits, in truncation.
#define TO_FRACTION(From, f, To, r, fbits)                                                                \
  row<to_fixed<From, To, false, FPRounding_ZERO, fbits>, From>(                                           \
      "fcvtzs " #r ", " #f " " #fbits, PROCESSOR("fcvtzs " #r "9, " #f "1, #" #fbits "\n\tfmov d0, x9")), \
      row<to_fixed<From, To, true, FPRounding_ZERO, fbits>, From>(                                        \
          "fcvtzu " #r ", " #f " " #fbits, PROCESSOR("fcvtzu " #r "9, " #f "1, #" #fbits "\n\tfmov d0, x9"))
// The last move leaves out what qemu 7.2 writes above the halfword: the sign's copies.
#define TO_HALFWORD_FRACTION(fbits)                                                                              \
  row<to_fixed<H, H, false, FPRounding_ZERO, fbits>, H>("fcvtzs h, h " #fbits,                                   \
                                                        PROCESSOR("fcvtzs h0, h1, #" #fbits "\n\tfmov h0, h0")), \
      row<to_fixed<H, H, true, FPRounding_ZERO, fbits>, H>("fcvtzu h, h " #fbits,                                \
                                                           PROCESSOR("fcvtzu h0, h1, #" #fbits "\n\tfmov h0, h0"))
#define TO_FRACTIONS(From, f)                                                                    \
  TO_FRACTION(From, f, S, w, 1), TO_FRACTION(From, f, S, w, 15), TO_FRACTION(From, f, S, w, 32), \
      TO_FRACTION(From, f, D, x, 1), TO_FRACTION(From, f, D, x, 24), TO_FRACTION(From, f, D, x, 64)

#define FROM_FIXED(T, f, Integer, r)                                                                        \
  row<from_fixed<T, Integer, false, 0>, Integer>("scvtf " #f ", " #r, PROCESSOR("scvtf " #f "0, " #r "9")), \
      row<from_fixed<T, Integer, true, 0>, Integer>("ucvtf " #f ", " #r, PROCESSOR("ucvtf " #f "0, " #r "9"))
#define FROM_FRACTION(T, f, Integer, r, fbits)                                                       \
  row<from_fixed<T, Integer, false, fbits>, Integer>("scvtf " #f ", " #r " " #fbits,                 \
                                                     PROCESSOR("scvtf " #f "0, " #r "9, #" #fbits)), \
      row<from_fixed<T, Integer, true, fbits>, Integer>("ucvtf " #f ", " #r " " #fbits,              \
                                                        PROCESSOR("ucvtf " #f "0, " #r "9, #" #fbits))
#define FROM_FORMS(T, f)                                                                                         \
  FROM_FIXED(T, f, std::int32_t, w), FROM_FIXED(T, f, std::int64_t, x), FROM_FRACTION(T, f, std::int32_t, w, 1), \
      FROM_FRACTION(T, f, std::int32_t, w, 32), FROM_FRACTION(T, f, std::int64_t, x, 40),                        \
      FROM_FRACTION(T, f, std::int64_t, x, 64)

#define ROUND(T, f, rounding, mnemonic) \
  row<round_to_integral<T, rounding>, T>(mnemonic " " #f, PROCESSOR(mnemonic " " #f "0, " #f "1"))
#define ROUND_FORMS(T, f)                                                                 \
  ROUND(T, f, FPRounding_TIEEVEN, "frintn"), ROUND(T, f, FPRounding_POSINF, "frintp"),    \
      ROUND(T, f, FPRounding_NEGINF, "frintm"), ROUND(T, f, FPRounding_ZERO, "frintz"),   \
      ROUND(T, f, FPRounding_TIEAWAY, "frinta"),                                          \
      row<round_by_mode<T, true>, T>("frintx " #f, PROCESSOR("frintx " #f "0, " #f "1")), \
      row<round_by_mode<T, false>, T>("frinti " #f, PROCESSOR("frinti " #f "0, " #f "1"))

std::vector<routine> conversion_routines() {
  return {
      CONVERT(H, h, S, s),
      CONVERT(H, h, D, d),
      CONVERT(S, s, H, h),
      CONVERT(S, s, D, d),
      CONVERT(D, d, H, h),
      CONVERT(D, d, S, s),
      row<convert_to_odd, D>("fcvtxn s, d", PROCESSOR("fcvtxn s0, d1")),
      TO_FIXED(false, FPRounding_TIEEVEN, "fcvtns"),
      TO_FIXED(true, FPRounding_TIEEVEN, "fcvtnu"),
      TO_FIXED(false, FPRounding_POSINF, "fcvtps"),
      TO_FIXED(true, FPRounding_POSINF, "fcvtpu"),
      TO_FIXED(false, FPRounding_NEGINF, "fcvtms"),
      TO_FIXED(true, FPRounding_NEGINF, "fcvtmu"),
      TO_FIXED(false, FPRounding_ZERO, "fcvtzs"),
      TO_FIXED(true, FPRounding_ZERO, "fcvtzu"),
      TO_FIXED(false, FPRounding_TIEAWAY, "fcvtas"),
      TO_FIXED(true, FPRounding_TIEAWAY, "fcvtau"),
      TO_HALFWORD_FRACTION(1),
      TO_HALFWORD_FRACTION(8),
      TO_HALFWORD_FRACTION(16),
      EACH_FORMAT(TO_FRACTIONS),
      EACH_FORMAT(FROM_FORMS),
      row<from_fixed<H, std::int16_t, false, 0>, std::int16_t>("scvtf h, h", PROCESSOR("scvtf h0, h1")),
      row<from_fixed<H, std::int16_t, true, 0>, std::int16_t>("ucvtf h, h", PROCESSOR("ucvtf h0, h1")),
      EACH_FORMAT(ROUND_FORMS),
  };
}

#undef ROUND_FORMS
#undef ROUND
#undef FROM_FORMS
#undef FROM_FRACTION
#undef FROM_FIXED
#undef TO_FRACTIONS
#undef TO_HALFWORD_FRACTION
#undef TO_FRACTION
#undef TO_FIXED
#undef TO_HALFWORD
#undef TO_REGISTER
#undef CONVERT
#undef EACH_FORMAT

}  // namespace quern::judge
