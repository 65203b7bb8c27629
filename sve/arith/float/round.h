// Rounding to a format (FPRound): the last step of every operation with an inexact result.
#pragma once

#include <cstdint>

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"
#include "sve/arith/float/shift.h"
#include "sve/arith/float/unpack.h"

// The pattern of the number (1 + mnt / 2^W) * 2^(exp - bias) for a W-bit `mnt`, negated if `sgn` is 1, rounded as `rm`,
// an FPRounding, asks. The lowest bit of mnt may stand for any lower bits that aren't all zero. `exp` may lie anywhere:
// above the format's range it overflows, below 1 the result is subnormal or zero, or flushed if the mode has the
// format's flush bit. The mode's own rounding bits are not looked at. Raises OFC, UFC and IXC in *flags; tininess is
// detected before rounding, and a flush raises UFC alone. With AHP in the mode, halves have one more exponent and no
// infinity: overflow gives the largest magnitude and IOC alone. Any sgn other than 0 and 1 is an error.
std::uint16_t fp16_round_(int sgn, int exp, std::uint16_t mnt, int rm, int mode, int* flags);
std::uint32_t fp32_round_(int sgn, int exp, std::uint32_t mnt, int rm, int mode, int* flags);
std::uint64_t fp64_round_(int sgn, int exp, std::uint64_t mnt, int rm, int mode, int* flags);

namespace quern {

// Whether the magnitude is rounded up, of which the last kept bit is odd or not and the bits below it are `error`
// quarters of it, all below a quarter being sticky: 0 exact, 1 below half, 2 half, 3 above. TIEAWAY counts as ZERO.
constexpr bool rounds_up(int rm, int sgn, unsigned error, bool odd) {
  switch (rm) {
    case FPRounding_TIEEVEN: return error == 3 || (error == 2 && odd);
    case FPRounding_POSINF: return sgn == 0 && error != 0;
    case FPRounding_NEGINF: return sgn == 1 && error != 0;
    default: return false;
  }
}

// An overflow: infinity, or the largest number where the rounding is towards zero from there. Under AHP, which is for
// halves only, the pattern of all ones below the sign.
template <float_bits T>
constexpr T overflow(int sgn, int rm, int mode, int* flags) {
  if (sizeof(T) == 2 && (mode & mode_AHP)) {
    *flags |= IOC;
    return static_cast<T>(zero<T>(sgn) | 0x7FFF);
  }
  *flags |= OFC | IXC;
  const bool away = rm == FPRounding_TIEEVEN || rm == (sgn ? FPRounding_NEGINF : FPRounding_POSINF);
  return static_cast<T>(zero<T>(sgn) | (away ? float_format<T>::infinity : float_format<T>::largest_normal));
}

// The rounders' body; see fp16_round_ for what the arguments mean.
template <float_bits T>
constexpr T round(int sgn, int exp, T mnt, int rm, int mode, int* flags) {
  using format = float_format<T>;
  using word = mantissa<T>;
  if (exp < 1 && (mode & mode_flush<T>)) {
    *flags |= UFC;
    return zero<T>(sgn);
  }
  // The significand with two bits below the last: a subnormal's is shifted down to the exponent it will have.
  word m = word{1} << (format::fraction_bits + 2) | shift_right_sticky<word>(mnt, format::exponent_bits - 1);
  if (exp < 1) m = shift_right_sticky(m, 1 - exp);
  int biased = exp < 1 ? 0 : exp;
  word int_mant = m >> 2;
  const auto error = static_cast<unsigned>(m & 3);
  if (biased == 0 && error != 0) *flags |= UFC;

  if (rounds_up(rm, sgn, error, int_mant & 1)) {
    ++int_mant;
    if (biased == 0 && int_mant == format::hidden_bit) biased = 1;
    if (int_mant == word{format::hidden_bit} << 1) ++biased;  // all of its fraction bits are zero
  }
  if (sizeof(T) != 8 && rm == FPRounding_ODD && error != 0) int_mant |= 1;

  const bool has_infinity = sizeof(T) != 2 || !(mode & mode_AHP);
  if (biased > format::top_exponent - has_infinity) return overflow<T>(sgn, rm, mode, flags);
  if (error != 0) *flags |= IXC;
  return pack<T>(sgn, biased, int_mant);
}

// `word`, which has its top bit set, as the fraction that the rounders take: the top bit falls off, and what doesn't
// fit is sticky.
template <float_bits T, class Word>
constexpr T fraction_below_top(Word word) {
  const auto fraction = static_cast<Word>(word << 1);
  return static_cast<T>(shift_right_sticky(fraction, bits_of<Word> - float_format<T>::width));
}

// The number word / 2^unit * 2^(exp - bias), not zero, rounded to the format: `unit` is the bit of `word`, an unsigned
// integer of any width, that counts 1 at exponent `exp`.
template <float_bits T, class Word>
constexpr T normalize_and_round(int sgn, int exp, Word word, int unit, int rm, int mode, int* flags) {
  const int zeros = leading_zeros(word);
  const auto top = static_cast<Word>(word << zeros);  // NOLINT: the analyzer takes a product of two numbers for a zero
  const int exp_of_top = exp + bits_of<Word> - 1 - unit - zeros;
  return round<T>(sgn, exp_of_top, fraction_below_top<T>(top), rm, mode, flags);
}

}  // namespace quern
