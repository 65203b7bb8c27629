// Numbers cut at the point: what conversion to integers and rounding to an integral value share.
#pragma once

#include "sve/arith/float/round.h"
#include "sve/arith/float/shift.h"

namespace quern {

// `mnt` / 2^distance, rounded to an integer as `rounding` asks, TIEAWAY too; and whether anything was lost.
template <class Word>
struct integral {
  Word value;
  bool inexact;
};

// `distance` is at least 1, and the two top bits of `mnt` are clear. `sgn` is the sign of the number that mnt is the
// magnitude of.
template <class Word>
constexpr integral<Word> round_at_point(int sgn, Word mnt, int distance, FPRounding rounding) {
  const Word quarters = shift_right_sticky(static_cast<Word>(mnt << 2), distance);
  const Word whole = quarters >> 2;
  const auto error = static_cast<unsigned>(quarters & 3);
  const bool up = rounding == FPRounding_TIEAWAY ? error >= 2 : rounds_up(rounding, sgn, error, whole & 1);
  return {whole + up, error != 0};
}

// The pattern of a number that the format holds: `mnt`, not zero and with no bit above the hidden one, times
// 2^(exp - bias - fraction bits). `exp` less its leading zeros is a normal number's exponent.
template <float_bits T>
constexpr T normalize_and_pack(int sgn, int exp, mantissa<T> mnt) {
  const int zeros = leading_zeros(mnt) - (bits_of<mantissa<T>> - 1 - float_format<T>::fraction_bits);
  return pack<T>(sgn, exp - zeros, mnt << zeros);
}

}  // namespace quern
