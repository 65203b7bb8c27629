// The square root.
#include "sve/arith/float/square_root.h"

#include <type_traits>

#include "sve/arith/float/nan.h"
#include "sve/arith/float/round.h"

using namespace quern;

namespace {

// A number next to the square root of n, of 2 * bits bits of which one of the top two is set:
// (root - 1)^2 < n < (root + 1)^2. Each step is one of Newton's, from the root of n's upper half, and doubles the bits.
template <int bits, class Word>
constexpr Word near_root(Word n) {
  if constexpr (bits == 2) {
    return 1 + (n >> 2);
  } else {
    using half = std::conditional_t<(bits > 32), std::uint64_t, std::uint32_t>;
    const Word root = near_root<bits / 2>(static_cast<half>(n >> bits));
    return (root << (bits / 2 - 1)) + (n >> (bits / 2 + 1)) / root;
  }
}

// The root of a positive number, whose significand is moved up to have an even exponent and twice a word's bits: the
// root then fills a word. As the low bits of n are zero, its near root is no further up than a word reaches.
template <float_bits T>
T root(const unpacked<T>& a, int mode, int* flags) {
  using word = mantissa<T>;
  using wide = wide_mantissa<T>;
  constexpr int top = bits_of<word> - 1;
  const int zeros = leading_zeros(a.mnt);
  const int exponent = a.exp - zeros + top - float_format<T>::fraction_bits - float_format<T>::bias;
  const wide n = static_cast<wide>(a.mnt << zeros) << (top + (exponent & 1));

  wide near = near_root<bits_of<word>>(n);
  if (near * near > n) --near;
  const bool inexact = near * near != n;
  return normalize_and_round<T>(0, (exponent >> 1) + float_format<T>::bias, static_cast<word>(near) | word{inexact},
                                top, rounding_of(mode), mode, flags);
}

}  // namespace

template <float_bits T>
T FPSqrt(T value, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    const unpacked<T> a = unpack(value, mode, flags);
    if (is_nan(value)) return process_nan(value, mode, flags);
    if (is_zero(a)) return zero<T>(a.sgn);
    if (a.sgn) return invalid_operation<T>(flags);
    if (is_infinite(a)) return infinity<T>(0);
    return root(a, mode, flags);
  });
}

template std::uint16_t FPSqrt(std::uint16_t, FPSCR&);
template std::uint32_t FPSqrt(std::uint32_t, FPSCR&);
template std::uint64_t FPSqrt(std::uint64_t, FPSCR&);
