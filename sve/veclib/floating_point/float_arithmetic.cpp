// Floating-point addition, subtraction, multiplication, division, square root, maximum and minimum.
#include "sve/veclib/floating_point/float_arithmetic.h"

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto add = [](auto& fp, auto a, auto b) { return fp.fadd(a, b); };
constexpr auto sub = [](auto& fp, auto a, auto b) { return fp.fsub(a, b); };
constexpr auto mul = [](auto& fp, auto a, auto b) { return fp.fmul(a, b); };
constexpr auto mulx = [](auto& fp, auto a, auto b) { return fp.fmulx(a, b); };
constexpr auto div = [](auto& fp, auto a, auto b) { return fp.fdiv(a, b); };
constexpr auto max = [](auto& fp, auto a, auto b) { return fp.fmax(a, b); };
constexpr auto min = [](auto& fp, auto a, auto b) { return fp.fmin(a, b); };
constexpr auto maxnum = [](auto& fp, auto a, auto b) { return fp.fmaxnm(a, b); };
constexpr auto minnum = [](auto& fp, auto a, auto b) { return fp.fminnm(a, b); };

template <class Op>
constexpr auto reversed(Op op) {
  return [op](auto& fp, auto a, auto b) { return op(fp, b, a); };
}

constexpr auto AddVVM = float_merging(add);
constexpr auto SubVVM = float_merging(sub);
constexpr auto SubRVVM = float_merging(reversed(sub));
constexpr auto MulVVM = float_merging(mul);
constexpr auto MulXVVM = float_merging(mulx);
constexpr auto DivVVM = float_merging(div);
constexpr auto DivRVVM = float_merging(reversed(div));
constexpr auto AbdVVM = float_merging([](auto& fp, auto a, auto b) { return absolute(sub(fp, a, b)); });
constexpr auto MaxVVM = float_merging(max);
constexpr auto MinVVM = float_merging(min);
constexpr auto MaxNumVVM = float_merging(maxnum);
constexpr auto MinNumVVM = float_merging(minnum);

constexpr auto ScaleVVM = float_merging([](auto& fp, auto a, auto n) { return fp.fscale(a, n); });

constexpr auto AddVVX = float_unpredicated(add);
constexpr auto SubVVX = float_unpredicated(sub);
constexpr auto MulVVX = float_unpredicated(mul);

constexpr auto MulVVIX = []<class T>(T lane, CpuContext& ctx, const VecV& a, const VecV& b, std::uint32_t index) {
  return MulVVX(lane, ctx, a, segment_lane<T>(b, index));
};

constexpr auto AbsVM = merging_unary(absolute);
constexpr auto NegVM = merging_unary(negated);
constexpr auto SqrtVM = float_merging_unary([](auto& fp, auto a) { return fp.fsqrt(a); });

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
    return merge_float_lanes<T>(op, ctx, a, pg, a, selector != 0 ? at_1(type) : at_0(type));
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
