// Rounding to an integral value in the same format.
#include "sve/arith/float/round_to_integral.h"

#include "sve/arith/float/integral.h"
#include "sve/arith/float/nan.h"

using namespace quern;

template <float_bits T>
T FPRoundInt(T op, FPRounding rounding, bool exact, FPSCR& fpscr) {
  using format = float_format<T>;
  constexpr int integral_exponent = format::bias + format::fraction_bits;
  return with_flags(fpscr, [&](int mode, int* flags) {
    if (is_nan(op)) return process_nan(op, mode, flags);
    const unpacked<T> a = unpack(op, mode, flags);
    if (a.exp >= integral_exponent) return op;  // infinities too
    const auto [whole, inexact] = round_at_point(a.sgn, a.mnt, integral_exponent - a.exp, rounding);
    if (exact && inexact) *flags |= IXC;
    return whole == 0 ? zero<T>(a.sgn) : normalize_and_pack<T>(a.sgn, integral_exponent, whole);
  });
}

template std::uint16_t FPRoundInt(std::uint16_t, FPRounding, bool, FPSCR&);
template std::uint32_t FPRoundInt(std::uint32_t, FPRounding, bool, FPSCR&);
template std::uint64_t FPRoundInt(std::uint64_t, FPRounding, bool, FPSCR&);
