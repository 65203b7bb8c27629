// The greater and the smaller of two numbers.
#include "sve/arith/float/minimum_maximum.h"

#include <functional>

#include "sve/arith/float/nan.h"
#include "sve/arith/float/unpack.h"

using namespace quern;

namespace {

// The operand that is `preferred` in magnitude where it is positive, and the other way round where it is negative; of
// two with different signs, the one whose sign is `preferred_sgn`.
template <float_bits T, class Preferred>
T choose(T left, T right, int preferred_sgn, Preferred preferred, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    const unpacked<T> a = unpack(left, mode, flags);
    const unpacked<T> b = unpack(right, mode, flags);
    if (const auto nan = process_nans(mode, flags, left, right)) return *nan;
    const bool first = a.sgn != b.sgn ? a.sgn == preferred_sgn : (a.sgn != 0) != preferred(left, right);
    return repack(first ? a : b);
  });
}

// `value`, or `replacement` where it alone is a quiet NaN.
template <float_bits T>
T number_or(T replacement, T value, T other) {
  return is_quiet_nan(value) && !is_quiet_nan(other) ? replacement : value;
}

}  // namespace

template <float_bits T>
T FPMax(T a, T b, FPSCR& fpscr) {
  return choose(a, b, 0, std::greater{}, fpscr);
}

template <float_bits T>
T FPMin(T a, T b, FPSCR& fpscr) {
  return choose(a, b, 1, std::less{}, fpscr);
}

template <float_bits T>
T FPMaxNum(T a, T b, FPSCR& fpscr) {
  const T below_all = infinity<T>(1);
  return FPMax(number_or(below_all, a, b), number_or(below_all, b, a), fpscr);
}

template <float_bits T>
T FPMinNum(T a, T b, FPSCR& fpscr) {
  const T above_all = infinity<T>(0);
  return FPMin(number_or(above_all, a, b), number_or(above_all, b, a), fpscr);
}

template std::uint16_t FPMax(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPMax(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPMax(std::uint64_t, std::uint64_t, FPSCR&);
template std::uint16_t FPMin(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPMin(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPMin(std::uint64_t, std::uint64_t, FPSCR&);
template std::uint16_t FPMaxNum(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPMaxNum(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPMaxNum(std::uint64_t, std::uint64_t, FPSCR&);
template std::uint16_t FPMinNum(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPMinNum(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPMinNum(std::uint64_t, std::uint64_t, FPSCR&);
