// Comparison.
#include "sve/arith/float/compare.h"

#include <compare>

#include "sve/arith/float/nan.h"
#include "sve/arith/float/unpack.h"

using namespace quern;

namespace {

// The order of two numbers, by sign, then exponent, then significand.
template <float_bits T>
std::partial_ordering order(const unpacked<T>& a, const unpacked<T>& b) {
  if (is_zero(a) && is_zero(b)) return std::partial_ordering::equivalent;
  if (a.sgn != b.sgn) return b.sgn <=> a.sgn;
  const auto magnitude = a.exp != b.exp ? a.exp <=> b.exp : a.mnt <=> b.mnt;
  return a.sgn ? 0 <=> magnitude : magnitude;
}

// The order of two patterns. A signalling NaN raises IOC, a quiet one if `signal`.
template <float_bits T>
std::partial_ordering compare(T left, T right, bool signal, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    const unpacked<T> a = unpack(left, mode, flags);
    const unpacked<T> b = unpack(right, mode, flags);
    if (!is_nan(left) && !is_nan(right)) return order(a, b);
    if (signal || is_signalling_nan(left) || is_signalling_nan(right)) *flags |= IOC;
    return std::partial_ordering::unordered;
  });
}

}  // namespace

template <float_bits T>
bool FPCompareEQ(T a, T b, FPSCR& fpscr) {
  return compare(a, b, false, fpscr) == 0;
}

template <float_bits T>
bool FPCompareUN(T a, T b, FPSCR& fpscr) {
  return compare(a, b, false, fpscr) == std::partial_ordering::unordered;
}

template <float_bits T>
bool FPCompareGE(T a, T b, FPSCR& fpscr) {
  return compare(a, b, true, fpscr) >= 0;
}

template <float_bits T>
bool FPCompareGT(T a, T b, FPSCR& fpscr) {
  return compare(a, b, true, fpscr) > 0;
}

template <float_bits T>
int FPCompare(T a, T b, bool signal, FPSCR& fpscr) {
  const std::partial_ordering ordering = compare(a, b, signal, fpscr);
  return ordering < 0 ? 8 : ordering == 0 ? 6 : ordering > 0 ? 2 : 3;
}

template bool FPCompareEQ(std::uint16_t, std::uint16_t, FPSCR&);
template bool FPCompareEQ(std::uint32_t, std::uint32_t, FPSCR&);
template bool FPCompareEQ(std::uint64_t, std::uint64_t, FPSCR&);
template bool FPCompareUN(std::uint16_t, std::uint16_t, FPSCR&);
template bool FPCompareUN(std::uint32_t, std::uint32_t, FPSCR&);
template bool FPCompareUN(std::uint64_t, std::uint64_t, FPSCR&);
template bool FPCompareGE(std::uint16_t, std::uint16_t, FPSCR&);
template bool FPCompareGE(std::uint32_t, std::uint32_t, FPSCR&);
template bool FPCompareGE(std::uint64_t, std::uint64_t, FPSCR&);
template bool FPCompareGT(std::uint16_t, std::uint16_t, FPSCR&);
template bool FPCompareGT(std::uint32_t, std::uint32_t, FPSCR&);
template bool FPCompareGT(std::uint64_t, std::uint64_t, FPSCR&);
template int FPCompare(std::uint32_t, std::uint32_t, bool, FPSCR&);
template int FPCompare(std::uint64_t, std::uint64_t, bool, FPSCR&);
