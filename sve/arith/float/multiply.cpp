// Multiplication.
#include "sve/arith/float/multiply.h"

#include "sve/arith/float/nan.h"
#include "sve/arith/float/round.h"

using namespace quern;

namespace {

// a * b. What an infinity times a zero gives is infinity_times_zero(sgn, flags).
template <float_bits T, class Answer>
T multiply(T left, T right, Answer infinity_times_zero, int mode, int* flags) {
  using format = float_format<T>;
  const unpacked<T> a = unpack(left, mode, flags);
  const unpacked<T> b = unpack(right, mode, flags);
  if (const auto nan = process_nans(mode, flags, left, right)) return *nan;

  const int sgn = a.sgn ^ b.sgn;
  const bool infinite = is_infinite(a) || is_infinite(b);
  const bool null = is_zero(a) || is_zero(b);
  if (infinite && null) return infinity_times_zero(sgn, flags);
  if (infinite) return infinity<T>(sgn);
  if (null) return zero<T>(sgn);

  const auto product = wide_mantissa<T>{a.mnt} * b.mnt;
  return normalize_and_round<T>(sgn, a.exp + b.exp - format::bias, product, 2 * format::fraction_bits,
                                rounding_of(mode), mode, flags);
}

}  // namespace

template <float_bits T>
T FPMul(T a, T b, FPSCR& fpscr) {
  constexpr auto invalid = [](int, int* flags) { return invalid_operation<T>(flags); };
  return with_flags(fpscr, [&](int mode, int* flags) { return multiply(a, b, invalid, mode, flags); });
}

template <float_bits T>
T FPMulX(T a, T b, FPSCR& fpscr) {
  constexpr auto signed_two = [](int sgn, int*) { return two<T>(sgn); };
  return with_flags(fpscr, [&](int mode, int* flags) { return multiply(a, b, signed_two, mode, flags); });
}

template std::uint16_t FPMul(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPMul(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPMul(std::uint64_t, std::uint64_t, FPSCR&);
template std::uint16_t FPMulX(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPMulX(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPMulX(std::uint64_t, std::uint64_t, FPSCR&);
