// Division.
#include "sve/arith/float/divide.h"

#include "sve/arith/float/nan.h"
#include "sve/arith/float/round.h"

using namespace quern;

namespace {

// The quotient of two numbers that are neither zero nor infinite. With both significands at the top of their words, the
// quotient of `a` moved up by all but two of the bits of a word has at least all but two bits, far more than a rounding
// needs, and fits in one; a remainder is sticky.
template <float_bits T>
T quotient(const unpacked<T>& a, const unpacked<T>& b, int mode, int* flags) {
  using word = mantissa<T>;
  using wide = wide_mantissa<T>;
  const int a_zeros = leading_zeros(a.mnt), b_zeros = leading_zeros(b.mnt);
  const wide dividend = static_cast<wide>(a.mnt << a_zeros) << (bits_of<word> - 2);
  const word divisor = b.mnt << b_zeros;
  const auto whole = static_cast<word>(dividend / divisor);
  const bool inexact = wide{whole} * divisor != dividend;

  const int exp = (a.exp - a_zeros) - (b.exp - b_zeros) + float_format<T>::bias;
  return normalize_and_round<T>(a.sgn ^ b.sgn, exp, whole | static_cast<word>(inexact), bits_of<word> - 2,
                                rounding_of(mode), mode, flags);
}

}  // namespace

template <float_bits T>
T FPDiv(T left, T right, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    const unpacked<T> a = unpack(left, mode, flags);
    const unpacked<T> b = unpack(right, mode, flags);
    if (const auto nan = process_nans(mode, flags, left, right)) return *nan;

    const int sgn = a.sgn ^ b.sgn;
    if ((is_infinite(a) && is_infinite(b)) || (is_zero(a) && is_zero(b))) return invalid_operation<T>(flags);
    if (is_infinite(a)) return infinity<T>(sgn);
    if (is_zero(b)) {
      *flags |= DZC;
      return infinity<T>(sgn);
    }
    if (is_zero(a) || is_infinite(b)) return zero<T>(sgn);
    return quotient(a, b, mode, flags);
  });
}

template std::uint16_t FPDiv(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPDiv(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPDiv(std::uint64_t, std::uint64_t, FPSCR&);
