// Addition and subtraction.
#include "sve/arith/float/add.h"

#include "sve/arith/float/nan.h"
#include "sve/arith/float/sum.h"

using namespace quern;

namespace {

// Room for a guard bit and what is sticky, below the last bit of both terms.
constexpr int guard_bits = 3;

// a + b, or a - b for a `flip` of 1.
template <float_bits T>
T add(T left, T right, int flip, int mode, int* flags) {
  const unpacked<T> a = unpack(left, mode, flags);
  const unpacked<T> b = unpack(right, mode, flags);
  if (const auto nan = process_nans(mode, flags, left, right)) return *nan;

  const int b_sgn = b.sgn ^ flip;
  if (is_infinite(a)) {
    return is_infinite(b) && a.sgn != b_sgn ? invalid_operation<T>(flags) : infinity<T>(a.sgn);
  }
  if (is_infinite(b)) return infinity<T>(b_sgn);
  if (is_zero(a) && is_zero(b) && a.sgn == b_sgn) return zero<T>(a.sgn);

  const term<mantissa<T>> x = {a.sgn, a.exp, a.mnt << guard_bits};
  const term<mantissa<T>> y = {b_sgn, b.exp, b.mnt << guard_bits};
  return round_sum<T>(add_terms(x, y), float_format<T>::fraction_bits + guard_bits, mode, flags);
}

}  // namespace

template <float_bits T>
T FPAdd(T a, T b, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) { return add(a, b, 0, mode, flags); });
}

template <float_bits T>
T FPSub(T a, T b, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) { return add(a, b, 1, mode, flags); });
}

template std::uint16_t FPAdd(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPAdd(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPAdd(std::uint64_t, std::uint64_t, FPSCR&);
template std::uint16_t FPSub(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPSub(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPSub(std::uint64_t, std::uint64_t, FPSCR&);
