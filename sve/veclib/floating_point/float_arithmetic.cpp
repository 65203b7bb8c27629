// Floating-point addition, subtraction, multiplication, division, square root, maximum and minimum.
#include "sve/veclib/floating_point/float_arithmetic.h"

#include "sve/arith/float/add.h"
#include "sve/arith/float/divide.h"
#include "sve/arith/float/minimum_maximum.h"
#include "sve/arith/float/multiply.h"
#include "sve/arith/float/scale.h"
#include "sve/arith/float/square_root.h"
#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto add = []<class T>(T a, T b, FPSCR& fpscr) { return FPAdd<T>(a, b, fpscr); };
constexpr auto sub = []<class T>(T a, T b, FPSCR& fpscr) { return FPSub<T>(a, b, fpscr); };
constexpr auto mul = []<class T>(T a, T b, FPSCR& fpscr) { return FPMul<T>(a, b, fpscr); };
constexpr auto mulx = []<class T>(T a, T b, FPSCR& fpscr) { return FPMulX<T>(a, b, fpscr); };
constexpr auto div = []<class T>(T a, T b, FPSCR& fpscr) { return FPDiv<T>(a, b, fpscr); };
constexpr auto max = []<class T>(T a, T b, FPSCR& fpscr) { return FPMax<T>(a, b, fpscr); };
constexpr auto min = []<class T>(T a, T b, FPSCR& fpscr) { return FPMin<T>(a, b, fpscr); };
constexpr auto maxnum = []<class T>(T a, T b, FPSCR& fpscr) { return FPMaxNum<T>(a, b, fpscr); };
constexpr auto minnum = []<class T>(T a, T b, FPSCR& fpscr) { return FPMinNum<T>(a, b, fpscr); };

template <class Op>
constexpr auto reversed(Op op) {
  return [op](auto a, auto b, FPSCR& fpscr) { return op(b, a, fpscr); };
}

constexpr auto AddVVM = float_merging(add);
constexpr auto SubVVM = float_merging(sub);
constexpr auto SubRVVM = float_merging(reversed(sub));
constexpr auto MulVVM = float_merging(mul);
constexpr auto MulXVVM = float_merging(mulx);
constexpr auto DivVVM = float_merging(div);
constexpr auto DivRVVM = float_merging(reversed(div));
constexpr auto AbdVVM = float_merging([](auto a, auto b, FPSCR& fpscr) { return absolute(sub(a, b, fpscr)); });
constexpr auto MaxVVM = float_merging(max);
constexpr auto MinVVM = float_merging(min);
constexpr auto MaxNumVVM = float_merging(maxnum);
constexpr auto MinNumVVM = float_merging(minnum);

constexpr auto ScaleVVM = float_merging([]<class T>(T a, T b, FPSCR& fpscr) {
  if constexpr (sizeof(T) == 2) return FPScale16(a, static_cast<std::int16_t>(b), fpscr);
  if constexpr (sizeof(T) == 4) return FPScale32(a, static_cast<std::int32_t>(b), fpscr);
  if constexpr (sizeof(T) == 8) return FPScale64(a, static_cast<std::int64_t>(b), fpscr);
});

constexpr auto AddVVX = float_unpredicated(add);
constexpr auto SubVVX = float_unpredicated(sub);
constexpr auto MulVVX = float_unpredicated(mul);

constexpr auto MulVVIX = []<class T>(T lane, CpuContext& ctx, const VecV& a, const VecV& b, std::uint32_t index) {
  return MulVVX(lane, ctx, a, segment_lane<T>(b, index));
};

constexpr auto AbsVM = merging_unary(absolute);
constexpr auto NegVM = merging_unary(negated);
constexpr auto SqrtVM = float_merging_unary([]<class T>(T a, FPSCR& fpscr) { return FPSqrt<T>(a, fpscr); });

// The constants that a selector chooses from.
constexpr auto zero = []<class T>(T) { return T{0}; };
constexpr auto one_half = []<class T>(T) { return pack<T>(0, float_format<T>::bias - 1, 0); };
constexpr auto one = []<class T>(T) { return pack<T>(0, float_format<T>::bias, 0); };
constexpr auto two = []<class T>(T) { return pack<T>(0, float_format<T>::bias + 1, 0); };

// (a, Pg, selector): op(a, the selector's constant), and a where inactive. The constant of halves is converted from
// single precision as one lane's arithmetic. That raises nothing, but it leaves of the context's status what any
// arithmetic leaves, also when no lane is active.
template <class Op, class At0, class At1>
constexpr auto with_constant(Op op, At0 at_0, At1 at_1) {
  return [=]<class T>(T type, CpuContext& ctx, const VecV& a, const PredV& pg, std::uint32_t selector) {
    if constexpr (sizeof(T) == 2) ctx.fpsr &= fpsr_mask;
    const T constant = selector != 0 ? at_1(type) : at_0(type);
    const auto with_it = [=](T lane, FPSCR& fpscr) { return op(lane, constant, fpscr); };
    return merge_float_lanes<T>(with_it, ctx, a, pg, a);
  };
}

constexpr auto AddVIM = with_constant(add, one_half, one);
constexpr auto SubVIM = with_constant(sub, one_half, one);
constexpr auto SubRVIM = with_constant(reversed(sub), one_half, one);
constexpr auto MulVIM = with_constant(mul, one_half, two);
constexpr auto MaxVIM = with_constant(max, zero, one);
constexpr auto MinVIM = with_constant(min, zero, one);
constexpr auto MaxNumVIM = with_constant(maxnum, zero, one);
constexpr auto MinNumVIM = with_constant(minnum, zero, one);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/float_arithmetic.def"
#include "sve/veclib/members/define.inc"
