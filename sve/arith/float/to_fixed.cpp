// Conversion to fixed-point integers.
#include "sve/arith/float/to_fixed.h"

#include <limits>

#include "sve/arith/float/integral.h"
#include "sve/arith/float/nan.h"

using namespace quern;

namespace {

using in_double = float_format<std::uint64_t>;

// The exponent of a double with no fraction bits, and the first of numbers that no 64-bit integer holds.
constexpr int integral_exponent = in_double::bias + in_double::fraction_bits;
constexpr int too_large_exponent = in_double::bias + 64;

// The greatest magnitude that the sign leaves to an integer.
template <class To>
constexpr To largest_magnitude(int sgn, bool u) {
  if (u) return sgn ? 0 : std::numeric_limits<To>::max();
  constexpr To signed_maximum = std::numeric_limits<To>::max() >> 1;
  return static_cast<To>(sgn ? signed_maximum + 1 : signed_maximum);
}

template <class To>
constexpr To with_sign(int sgn, To magnitude) {
  return sgn ? static_cast<To>(0 - magnitude) : magnitude;
}

template <class To>
To saturated(int sgn, bool u, int* flags) {
  *flags = IOC;
  return with_sign(sgn, largest_magnitude<To>(sgn, u));
}

integral<std::uint64_t> magnitude_of(int sgn, int exp, std::uint64_t mnt, FPRounding rounding) {
  if (exp >= integral_exponent) return {mnt << (exp - integral_exponent), false};
  return round_at_point(sgn, mnt, integral_exponent - exp, rounding);
}

}  // namespace

std::uint64_t FPToFixed_64(int sgn, int exp, std::uint64_t mnt, bool u, FPRounding rounding, int* flags) {
  const auto [magnitude, inexact] = magnitude_of(sgn, exp, mnt, rounding);
  if (magnitude > largest_magnitude<std::uint64_t>(sgn, u)) return saturated<std::uint64_t>(sgn, u, flags);
  if (inexact) *flags = IXC;
  return with_sign(sgn, magnitude);
}

template <float_bits From, std::unsigned_integral To>
To fplibFPToFixed(From value, int fbits, bool u, FPRounding rounding, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) -> To {
    const unpacked<From> a = unpack(value, mode, flags);
    if (is_nan(value)) {
      *flags |= IOC;
      return 0;
    }
    if (is_infinite(a)) return saturated<To>(a.sgn, u, flags);

    const int exp = a.exp + fbits + in_double::bias - float_format<From>::bias;
    if (exp >= too_large_exponent) return saturated<To>(a.sgn, u, flags);
    const auto mnt = std::uint64_t{a.mnt} << (in_double::fraction_bits - float_format<From>::fraction_bits);
    const std::uint64_t result = FPToFixed_64(a.sgn, exp, mnt, u, rounding, flags);
    // Out of a narrower range it is invalid alone: an inexactness on the way there is dropped.
    if (with_sign(a.sgn, result) > largest_magnitude<To>(a.sgn, u)) return saturated<To>(a.sgn, u, flags);
    return static_cast<To>(result);
  });
}

template std::uint16_t fplibFPToFixed(std::uint16_t, int, bool, FPRounding, FPSCR&);
template std::uint32_t fplibFPToFixed(std::uint16_t, int, bool, FPRounding, FPSCR&);
template std::uint64_t fplibFPToFixed(std::uint16_t, int, bool, FPRounding, FPSCR&);
template std::uint32_t fplibFPToFixed(std::uint32_t, int, bool, FPRounding, FPSCR&);
template std::uint64_t fplibFPToFixed(std::uint32_t, int, bool, FPRounding, FPSCR&);
template std::uint32_t fplibFPToFixed(std::uint64_t, int, bool, FPRounding, FPSCR&);
template std::uint64_t fplibFPToFixed(std::uint64_t, int, bool, FPRounding, FPSCR&);
