// The three floating-point formats, IEEE 754 binary16, binary32 and binary64, handled as raw bit patterns in unsigned
// integers; and the integers that their significands are computed in.
#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace quern {

__extension__ using uint128 = unsigned __int128;

// The pattern of a half, a single or a double.
template <class T>
concept float_bits = std::same_as<T, std::uint16_t> || std::same_as<T, std::uint32_t> || std::same_as<T, std::uint64_t>;

template <float_bits T>
struct float_format {
  static constexpr int width = 8 * sizeof(T);
  static constexpr int exponent_bits = width == 16 ? 5 : width == 32 ? 8 : 11;
  static constexpr int fraction_bits = width - 1 - exponent_bits;
  static constexpr int top_exponent = (1 << exponent_bits) - 1;  // the exponent field of infinities and NaNs
  static constexpr int bias = top_exponent / 2;

  static constexpr T sign_bit = static_cast<T>(T{1} << (width - 1));
  static constexpr T magnitude_mask = static_cast<T>(sign_bit - 1);
  static constexpr T hidden_bit = static_cast<T>(T{1} << fraction_bits);  // a normal number's integer bit
  static constexpr T fraction_mask = static_cast<T>(hidden_bit - 1);
  static constexpr T quiet_bit = static_cast<T>(hidden_bit >> 1);
  static constexpr T infinity = static_cast<T>(T{top_exponent} << fraction_bits);
  static constexpr T largest_normal = static_cast<T>(infinity - 1);
  static constexpr T default_nan = static_cast<T>(infinity | quiet_bit);
};

// What a significand is computed in: no narrower than int, so that no arithmetic is promoted behind our back.
template <float_bits T>
using mantissa = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;

// Twice as wide: holds the product of two significands.
template <float_bits T>
using wide_mantissa = std::conditional_t<sizeof(T) == 8, uint128, std::uint64_t>;

template <class Word>
inline constexpr int bits_of = 8 * sizeof(Word);

// The pattern of a sign, an exponent field and a fraction; a hidden bit in the fraction is dropped.
template <float_bits T>
constexpr T pack(int sgn, int exp, mantissa<T> mnt) {
  using format = float_format<T>;
  const auto sign_and_exponent = static_cast<mantissa<T>>(sgn << format::exponent_bits | exp);
  return static_cast<T>(sign_and_exponent << format::fraction_bits | (mnt & format::fraction_mask));
}

// Constants that the operations answer or add.
template <float_bits T>
constexpr T zero(int sgn) {
  return pack<T>(sgn, 0, 0);
}
template <float_bits T>
constexpr T infinity(int sgn) {
  return pack<T>(sgn, float_format<T>::top_exponent, 0);
}
template <float_bits T>
constexpr T two(int sgn) {
  return pack<T>(sgn, float_format<T>::bias + 1, 0);
}
template <float_bits T>
inline constexpr T one_and_a_half = pack<T>(0, float_format<T>::bias, float_format<T>::quiet_bit);
template <float_bits T>
inline constexpr T three = pack<T>(0, float_format<T>::bias + 1, float_format<T>::quiet_bit);

}  // namespace quern
