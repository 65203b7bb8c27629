// From a pattern to sign, exponent and significand (FPUnpack), with subnormals flushed as the mode says.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

namespace quern {

// The mode bit that flushes subnormals of the format.
template <float_bits T>
inline constexpr int mode_flush = sizeof(T) == 2 ? mode_FZ16 : mode_FZ;

// A number is mnt * 2^(exp - bias - fraction bits), negated if sgn is 1. Zeros and subnormals have exp 1 and lack the
// hidden bit. An infinity or a NaN has the top exponent.
template <float_bits T>
struct unpacked {
  int sgn;
  int exp;
  mantissa<T> mnt;
};

// What `value` is made of. A subnormal under its flush bit becomes a zero of its sign, which raises IDC in single and
// double and nothing in half. NaNs come through as they are.
template <float_bits T>
constexpr unpacked<T> unpack(T value, int mode, int* flags) {
  using format = float_format<T>;
  const int sgn = (value & format::sign_bit) != 0;
  const int exp = static_cast<int>(value >> format::fraction_bits) & format::top_exponent;
  const mantissa<T> fraction = value & format::fraction_mask;
  if (exp != 0) return {sgn, exp, fraction | format::hidden_bit};
  if (fraction == 0 || !(mode & mode_flush<T>)) return {sgn, 1, fraction};
  if (sizeof(T) != 2) *flags |= IDC;
  return {sgn, 1, 0};
}

template <float_bits T>
constexpr bool is_infinite(const unpacked<T>& a) {
  return a.exp == float_format<T>::top_exponent && a.mnt == float_format<T>::hidden_bit;
}
template <float_bits T>
constexpr bool is_zero(const unpacked<T>& a) {
  return a.mnt == 0;
}

// The pattern that has these parts: the way back, with nothing to round.
template <float_bits T>
constexpr T repack(const unpacked<T>& a) {
  return pack<T>(a.sgn, a.mnt & float_format<T>::hidden_bit ? a.exp : 0, a.mnt);
}

}  // namespace quern
