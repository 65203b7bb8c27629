// The refining steps for reciprocals.
#include "sve/arith/float/step.h"

#include "sve/arith/float/multiply_add.h"
#include "sve/arith/float/nan.h"
#include "sve/arith/float/sign.h"
#include "sve/arith/float/unpack.h"

using namespace quern;

namespace {

// (addend - left * right) * 2^scale, or `converged` where an infinity meets a zero.
template <float_bits T>
T step(T left, T right, T addend, int scale, T converged, FPSCR& fpscr) {
  return with_flags(fpscr, [&](int mode, int* flags) {
    const T minus_left = FPNeg(left);  // also as a NaN operand
    const unpacked<T> a = unpack(minus_left, mode, flags);
    const unpacked<T> b = unpack(right, mode, flags);
    if (const auto nan = process_nans(mode, flags, minus_left, right)) return *nan;
    if (is_infinite(a) || is_infinite(b)) {
      return is_zero(a) || is_zero(b) ? converged : infinity<T>(a.sgn ^ b.sgn);
    }
    return muladd(addend, minus_left, right, scale, mode, flags);
  });
}

}  // namespace

template <float_bits T>
T FPRecipStepFused(T a, T b, FPSCR& fpscr) {
  return step(a, b, two<T>(0), 0, two<T>(0), fpscr);
}

template <float_bits T>
T FPRSqrtStepFused(T a, T b, FPSCR& fpscr) {
  return step(a, b, three<T>, -1, one_and_a_half<T>, fpscr);
}

template std::uint16_t FPRecipStepFused(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPRecipStepFused(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPRecipStepFused(std::uint64_t, std::uint64_t, FPSCR&);
template std::uint16_t FPRSqrtStepFused(std::uint16_t, std::uint16_t, FPSCR&);
template std::uint32_t FPRSqrtStepFused(std::uint32_t, std::uint32_t, FPSCR&);
template std::uint64_t FPRSqrtStepFused(std::uint64_t, std::uint64_t, FPSCR&);
