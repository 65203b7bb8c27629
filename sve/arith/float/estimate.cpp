// Estimates of reciprocals and reciprocal square roots, and the reciprocal of an exponent.
#include "sve/arith/float/estimate.h"

#include <array>

#include "sve/arith/float/nan.h"
#include "sve/arith/float/round.h"

using namespace quern;

namespace {

// The fraction's eight bits of the estimate of 1 / sqrt(v), for 128 intervals of v in [1/4, 1/2) and 128 in [1/2, 1):
// in 1/512ths the interval is a to a + 1, or a to a + 2 in the upper half, and p / 2 its middle. The root is rounded up
// from the largest one, in 1/512ths, that isn't too large.
constexpr int table_entry(int i) {
  const int a = i < 128 ? 128 + i : 256 + 2 * (i - 128);
  const int p = a < 256 ? 2 * a + 1 : 2 * (a + 1);
  int b = 512;
  while (p * (b + 1) * (b + 1) < 1 << 28) ++b;
  return (b + 1) / 2 - 256;
}

constexpr auto recip_sqrt_estimate_table = [] {
  std::array<std::uint8_t, 256> table{};
  for (int i = 0; i != 256; ++i) table[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(table_entry(i));
  return table;
}();
static_assert(recip_sqrt_estimate_table[0] == 255 && recip_sqrt_estimate_table[127] == 106);
static_assert(recip_sqrt_estimate_table[128] == 105 && recip_sqrt_estimate_table[255] == 0);

// A positive number's significand at the top of its word, and the exponent that goes with that.
template <float_bits T>
struct normalized {
  int exp;
  mantissa<T> mnt;
  explicit normalized(const unpacked<T>& a)
      : exp(a.exp - leading_zeros(a.mnt) + bits_of<mantissa<T>> - 1 - float_format<T>::fraction_bits),
        mnt(a.mnt << leading_zeros(a.mnt)) {}
};

// Infinity, as what division by zero gives.
template <float_bits T>
T division_by_zero(int sgn, int* flags) {
  *flags |= DZC;
  return infinity<T>(sgn);
}

template <float_bits T>
T recip_estimate(const unpacked<T>& a) {
  using format = float_format<T>;
  const normalized<T> n(a);
  const auto middle = static_cast<unsigned>(n.mnt >> (bits_of<mantissa<T>> - 10)) | 1;  // of an interval, in 1/1024ths
  const unsigned estimate = ((1U << 19) / middle + 1) >> 1;
  const mantissa<T> mnt = mantissa<T>{estimate} << (format::fraction_bits - 8);
  const int exp = 2 * format::bias - 1 - n.exp;
  return exp > 0 ? pack<T>(a.sgn, exp, mnt) : pack<T>(a.sgn, 0, mnt >> (1 - exp));
}

template <float_bits T>
T recip_sqrt_estimate(const unpacked<T>& a) {
  using format = float_format<T>;
  const normalized<T> n(a);
  const auto interval = static_cast<unsigned>(n.mnt >> (bits_of<mantissa<T>> - 8)) & 127;
  const mantissa<T> fraction = recip_sqrt_estimate_table[interval + (n.exp % 2 == 0 ? 128 : 0)];
  return pack<T>(0, (3 * format::bias - 1 - n.exp) / 2, fraction << (format::fraction_bits - 8));
}

}  // namespace

template <float_bits T>
T FPRecipEstimate(T value, FPSCR& fpscr) {
  using format = float_format<T>;
  return with_flags(fpscr, [&](int mode, int* flags) {
    const unpacked<T> a = unpack(value, mode, flags);
    if (is_nan(value)) return process_nan(value, mode, flags);
    if (is_infinite(a)) return zero<T>(a.sgn);
    if (is_zero(a)) return division_by_zero<T>(a.sgn, flags);
    if (a.mnt < format::hidden_bit >> 2) return overflow<T>(a.sgn, rounding_of(mode), mode, flags);
    if ((mode & mode_flush<T>)&&a.exp >= 2 * format::bias - 1) {
      *flags |= UFC;
      return zero<T>(a.sgn);
    }
    return recip_estimate(a);
  });
}

template <float_bits T>
T FPRSqrtEstimate(T value, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    const unpacked<T> a = unpack(value, mode, flags);
    if (is_nan(value)) return process_nan(value, mode, flags);
    if (is_zero(a)) return division_by_zero<T>(a.sgn, flags);
    if (a.sgn) return invalid_operation<T>(flags);
    if (is_infinite(a)) return zero<T>(0);
    return recip_sqrt_estimate(a);
  });
}

template <float_bits T>
T FPRecpX(T value, FPSCR& fpscr) {
  constexpr int top = float_format<T>::top_exponent;
  return with_flags(fpscr, [&](int mode, int* flags) {
    const unpacked<T> a = unpack(value, mode, flags);
    if (is_nan(value)) return process_nan(value, mode, flags);
    const bool normal = (a.mnt & float_format<T>::hidden_bit) != 0;
    return pack<T>(a.sgn, normal ? top - a.exp : top - 1, 0);
  });
}

template std::uint16_t FPRecipEstimate(std::uint16_t, FPSCR&);
template std::uint32_t FPRecipEstimate(std::uint32_t, FPSCR&);
template std::uint64_t FPRecipEstimate(std::uint64_t, FPSCR&);
template std::uint16_t FPRSqrtEstimate(std::uint16_t, FPSCR&);
template std::uint32_t FPRSqrtEstimate(std::uint32_t, FPSCR&);
template std::uint64_t FPRSqrtEstimate(std::uint64_t, FPSCR&);
template std::uint16_t FPRecpX(std::uint16_t, FPSCR&);
template std::uint32_t FPRecpX(std::uint32_t, FPSCR&);
template std::uint64_t FPRecpX(std::uint64_t, FPSCR&);
