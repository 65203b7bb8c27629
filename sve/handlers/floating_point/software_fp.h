// The floating-point unit in software, on any machine: each lane by the library's routine.
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
#include "sve/arith/float/sign.h"
#include "sve/arith/float/square_root.h"
#include "sve/arith/float/step.h"
#include "sve/arith/float/to_fixed.h"
#include "sve/handlers/lane_group.h"
#include "sve/state/cpu_context.h"

namespace quern {

class software_fp {
 public:
  explicit software_fp(cpu_state& state) : state_(state), fpscr_{state.fpcr & fpcr_library_mask} {}
  ~software_fp() { state_.fpsr = (state_.fpsr | fpscr_.word) & fpsr_mask; }
  software_fp(const software_fp&) = delete;
  software_fp& operator=(const software_fp&) = delete;

// A routine that answers a pattern, and one that answers a truth value.
#define EACH(name, routine)                                                         \
  template <lane_group T, class... Others>                                          \
  T name(T a, Others... others) {                                                   \
    return each([this](auto... x) { return routine(x..., fpscr_); }, a, others...); \
  }
#define WHETHER(name, routine)                                                                   \
  template <lane_group T>                                                                        \
  T name(T a, T b) {                                                                             \
    return each([this](auto x, auto y) { return -std::uint64_t{routine(x, y, fpscr_)}; }, a, b); \
  }
  EACH(fadd, FPAdd)
  EACH(fsub, FPSub)
  EACH(fmul, FPMul)
  EACH(fdiv, FPDiv)
  EACH(fmax, FPMax)
  EACH(fmaxnm, FPMaxNum)
  EACH(fminnm, FPMinNum)
  EACH(frecps, FPRecipStepFused)
  EACH(fmla, FPMulAdd)
  EACH(fsqrt, FPSqrt)
  EACH(frecpe, FPRecipEstimate)
  WHETHER(fcmeq, FPCompareEQ)
  WHETHER(fcmge, FPCompareGE)
  WHETHER(fcmgt, FPCompareGT)
  WHETHER(fcmuo, FPCompareUN)
#undef EACH
#undef WHETHER

  template <lane_group T>
  T fmls(T sum, T a, T b) {
    return each([this](auto s, auto x, auto y) { return FPMulAdd(s, FPNeg(x), y, fpscr_); }, sum, a, b);
  }
  template <lane_group T>
  T frinta(T a) {
    return each([this](auto x) { return FPRoundInt(x, FPRounding_TIEAWAY, false, fpscr_); }, a);
  }

  // To and from integers of the lane's width.
  template <lane_group T>
  T fcvtzs(T a) {
    return each([this]<class X>(X x) { return to_fixed<X, X>(x, false); }, a);
  }
  template <lane_group T>
  T fcvtzu(T a) {
    return each([this]<class X>(X x) { return to_fixed<X, X>(x, true); }, a);
  }
  template <lane_group T>
  T scvtf(T a) {
    return each([this]<class X>(X x) { return from_signed<X>(static_cast<std::make_signed_t<X>>(x)); }, a);
  }
  template <lane_group T>
  T ucvtf(T a) {
    return each([this]<class X>(X x) { return from_unsigned<X>(x); }, a);
  }

  // Between formats, in lanes of 64 bits: a single or a 32-bit integer is the low word, and as a result it clears, or
  // extends into, the upper word.
  doubles fcvt_s2d(doubles a) {
    return each([this](auto x) { return FPConvert<std::uint32_t, std::uint64_t>(low_word(x), rounding(), fpscr_); }, a);
  }
  doubles fcvt_d2s(doubles a) {
    return each([this](auto x) { return FPConvert<std::uint64_t, std::uint32_t>(x, rounding(), fpscr_); }, a);
  }
  doubles fcvtzs_s2d(doubles a) {
    return each([this](auto x) { return to_fixed<std::uint32_t, std::uint64_t>(low_word(x), false); }, a);
  }
  doubles fcvtzs_d2s(doubles a) {
    return each([this](auto x) { return sign_extended(to_fixed<std::uint64_t, std::uint32_t>(x, false)); }, a);
  }
  doubles fcvtzu_d2s(doubles a) {
    return each([this](auto x) { return to_fixed<std::uint64_t, std::uint32_t>(x, true); }, a);
  }
  doubles scvtf_s2d(doubles a) {
    return each([this](auto x) { return from_signed<std::uint64_t>(static_cast<std::int32_t>(low_word(x))); }, a);
  }
  doubles scvtf_d2s(doubles a) {
    return each([this](auto x) { return from_signed<std::uint32_t>(static_cast<std::int64_t>(x)); }, a);
  }
  doubles ucvtf_s2d(doubles a) {
    return each([this](auto x) { return from_unsigned<std::uint64_t>(low_word(x)); }, a);
  }

 private:
  // The bits of FPSR that a program can meet; the controls, which FPSCR has beside the flags, are not among them.
  static constexpr std::uint32_t fpsr_mask = 0xF800009F;

  template <lane_group T, class Op, class... Others>
  static T each(Op op, T a, Others... others) {
    T r{};
    for (int i = 0; i != group_lanes<T>; ++i) r[i] = static_cast<lane_of<T>>(op(a[i], others[i]...));
    return r;
  }

  static std::uint32_t low_word(std::uint64_t x) { return static_cast<std::uint32_t>(x); }
  static std::int64_t sign_extended(std::uint32_t x) { return static_cast<std::int32_t>(x); }

  FPRounding rounding() const { return rounding_of(fpscr_); }

  template <class From, class To>
  To to_fixed(From x, bool is_unsigned) {
    return fplibFPToFixed<From, To>(x, 0, is_unsigned, FPRounding_ZERO, fpscr_);
  }
  template <class To>
  To from_signed(std::int64_t x) {
    return fplibFixedToFP<To>(static_cast<std::uint64_t>(x), 0, false, rounding(), fpscr_);
  }
  template <class To>
  To from_unsigned(std::uint64_t x) {
    return fplibFixedToFP<To>(x, 0, true, rounding(), fpscr_);
  }

  cpu_state& state_;
  FPSCR fpscr_;
};

}  // namespace quern
