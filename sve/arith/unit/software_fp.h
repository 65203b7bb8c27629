// The floating-point unit in software, on any machine: each lane by the library's routine. It takes single numbers too.
#pragma once

#include "sve/arith/float/add.h"
#include "sve/arith/float/compare.h"
#include "sve/arith/float/convert.h"
#include "sve/arith/float/divide.h"
#include "sve/arith/float/estimate.h"
#include "sve/arith/float/from_fixed.h"
#include "sve/arith/float/minimum_maximum.h"
#include "sve/arith/float/multiply.h"
#include "sve/arith/float/multiply_add.h"
#include "sve/arith/float/round_to_integral.h"
#include "sve/arith/float/scale.h"
#include "sve/arith/float/sign.h"
#include "sve/arith/float/square_root.h"
#include "sve/arith/float/step.h"
#include "sve/arith/float/to_fixed.h"
#include "sve/arith/float/trigonometric.h"
#include "sve/state/cpu_context.h"
#include "sve/state/lane_group.h"

namespace quern {

// What an operation takes and answers: a group, or one number.
template <class T>
concept float_operand = lane_group<T> || float_bits<T>;

class software_fp {
 public:
  // For a cpu_state or a CpuContext.
  template <class State>
  explicit software_fp(State& state) : fpsr_(state.fpsr), fpscr_{state.fpcr & fpcr_library_mask} {}
  // The controls, which fpscr_ has beside the flags, are not in the mask.
  ~software_fp() { fpsr_ = (fpsr_ | fpscr_.word) & fpsr_mask; }
  software_fp(const software_fp&) = delete;
  software_fp& operator=(const software_fp&) = delete;

// A routine that answers a pattern, and one that answers a truth value.
#define EACH(name, routine)                                                         \
  template <float_operand T, class... Others>                                       \
  T name(T a, Others... others) {                                                   \
    return each([this](auto... x) { return routine(x..., fpscr_); }, a, others...); \
  }
#define WHETHER(name, routine)                                                                   \
  template <float_operand T>                                                                     \
  T name(T a, T b) {                                                                             \
    return each([this](auto x, auto y) { return -std::uint64_t{routine(x, y, fpscr_)}; }, a, b); \
  }
  EACH(fadd, FPAdd)
  EACH(fsub, FPSub)
  EACH(fmul, FPMul)
  EACH(fmulx, FPMulX)
  EACH(fdiv, FPDiv)
  EACH(fmax, FPMax)
  EACH(fmin, FPMin)
  EACH(fmaxnm, FPMaxNum)
  EACH(fminnm, FPMinNum)
  EACH(frecps, FPRecipStepFused)
  EACH(frsqrts, FPRSqrtStepFused)
  EACH(fmla, FPMulAdd)
  EACH(fsqrt, FPSqrt)
  EACH(frecpe, FPRecipEstimate)
  EACH(frsqrte, FPRSqrtEstimate)
  EACH(frecpx, FPRecpX)
  EACH(ftsmul, FPTRISMUL)
  WHETHER(fcmeq, FPCompareEQ)
  WHETHER(fcmge, FPCompareGE)
  WHETHER(fcmgt, FPCompareGT)
  WHETHER(fcmuo, FPCompareUN)
#undef EACH
#undef WHETHER

  template <float_operand T>
  T fmls(T sum, T a, T b) {
    return each([this](auto s, auto x, auto y) { return FPMulAdd(s, FPNeg(x), y, fpscr_); }, sum, a, b);
  }

  // Coefficient `index` + a * |b|.
  template <float_operand T>
  T ftmad(std::uint64_t index, T a, T b) {
    return each([&](auto x, auto y) { return FPTRIMADD(index, x, y, fpscr_); }, a, b);
  }
  // a * 2^n, for signed integers n.
  template <float_operand T>
  T fscale(T a, T n) {
    return each(
        [this]<class X>(X x, X power) {
          if constexpr (sizeof(X) == 2) return FPScale16(x, static_cast<std::int16_t>(power), fpscr_);
          if constexpr (sizeof(X) == 4) return FPScale32(x, static_cast<std::int32_t>(power), fpscr_);
          if constexpr (sizeof(X) == 8) return FPScale64(x, static_cast<std::int64_t>(power), fpscr_);
        },
        a, n);
  }
#define ROUNDED(name, rounding, exact)                                                 \
  template <float_operand T>                                                           \
  T name(T a) {                                                                        \
    return each([this](auto x) { return FPRoundInt(x, rounding, exact, fpscr_); }, a); \
  }
  ROUNDED(frintn, FPRounding_TIEEVEN, false)
  ROUNDED(frintp, FPRounding_POSINF, false)
  ROUNDED(frintm, FPRounding_NEGINF, false)
  ROUNDED(frintz, FPRounding_ZERO, false)
  ROUNDED(frinta, FPRounding_TIEAWAY, false)
  ROUNDED(frinti, rounding_of(fpscr_), false)
  ROUNDED(frintx, rounding_of(fpscr_), true)
#undef ROUNDED

  // Conversions, in lanes as wide as the wider side. The other side is the low part of the lane: as a source the rest
  // is not looked at, as a result it is extended into the rest by its sign. Neither the alternative half format nor the
  // flushing of halves has a part in those between formats; those to integers round towards zero.
  template <float_bits Result, float_bits Source, float_operand T>
  T to_format(T a) {
    return each(
        [this](auto x) {
          FPSCR plain{fpscr_.word & ~(FPSCR_AHP | FPSCR_FZ16)};
          const Result result = FPConvert<Source, Result>(static_cast<Source>(x), rounding_of(plain), plain);
          fpscr_.word |= plain.word;
          return result;
        },
        a);
  }
  template <std::integral Result, float_bits Source, float_operand T>
  T to_integer(T a) {
    return each(
        [this](auto x) {
          return static_cast<Result>(fplibFPToFixed<Source, std::make_unsigned_t<Result>>(
              static_cast<Source>(x), 0, std::is_unsigned_v<Result>, FPRounding_ZERO, fpscr_));
        },
        a);
  }
  template <float_bits Result, std::integral Source, float_operand T>
  T from_integer(T a) {
    return each(
        [this](auto x) {
          return fplibFixedToFP<Result>(static_cast<std::uint64_t>(static_cast<Source>(x)), 0,
                                        std::is_unsigned_v<Source>, rounding_of(fpscr_), fpscr_);
        },
        a);
  }

  // The same by name: of the lane's width, or between single and double precision.
  template <float_operand T>
  T fcvtzs(T a) {
    return to_integer<std::make_signed_t<lane_of<T>>, lane_of<T>>(a);
  }
  template <float_operand T>
  T fcvtzu(T a) {
    return to_integer<lane_of<T>, lane_of<T>>(a);
  }
  template <float_operand T>
  T scvtf(T a) {
    return from_integer<lane_of<T>, std::make_signed_t<lane_of<T>>>(a);
  }
  template <float_operand T>
  T ucvtf(T a) {
    return from_integer<lane_of<T>, lane_of<T>>(a);
  }
  doubles fcvt_s2d(doubles a) { return to_format<std::uint64_t, std::uint32_t>(a); }
  doubles fcvt_d2s(doubles a) { return to_format<std::uint32_t, std::uint64_t>(a); }
  doubles fcvtzs_s2d(doubles a) { return to_integer<std::int64_t, std::uint32_t>(a); }
  doubles fcvtzs_d2s(doubles a) { return to_integer<std::int32_t, std::uint64_t>(a); }
  doubles fcvtzu_d2s(doubles a) { return to_integer<std::uint32_t, std::uint64_t>(a); }
  doubles scvtf_s2d(doubles a) { return from_integer<std::uint64_t, std::int32_t>(a); }
  doubles scvtf_d2s(doubles a) { return from_integer<std::uint32_t, std::int64_t>(a); }
  doubles ucvtf_s2d(doubles a) { return from_integer<std::uint64_t, std::uint32_t>(a); }

 private:
  template <float_operand T, class Op, class... Others>
  static T each(Op op, T a, Others... others) {
    if constexpr (float_bits<T>) {
      return static_cast<T>(op(a, others...));
    } else {
      T r{};
      for (int i = 0; i != group_lanes<T>; ++i) r[i] = static_cast<lane_of<T>>(op(a[i], others[i]...));
      return r;
    }
  }

  std::uint32_t& fpsr_;
  FPSCR fpscr_;
};

}  // namespace quern
