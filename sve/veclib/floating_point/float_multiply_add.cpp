// Floating-point fused multiply-add: one rounding for product and sum. Signs are changed beforehand, of a NaN too.
#include "sve/veclib/floating_point/float_multiply_add.h"

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto same = [](auto a) { return a; };

// Sign(addend) + Factor(x) * y.
template <class Sign, class Factor>
constexpr auto multiply_add(Sign sign, Factor factor) {
  return [=](auto& fp, auto addend, auto x, auto y) { return fp.fmla(sign(addend), factor(x), y); };
}
constexpr auto fma = multiply_add(same, same);
constexpr auto fms = multiply_add(same, negated);
constexpr auto fnma = multiply_add(negated, negated);
constexpr auto fnms = multiply_add(negated, same);

// The operation with its first operand, the multiplicand, last in the sum: (a, b, c) is c + a * b.
template <class Op>
constexpr auto to_last(Op op) {
  return [op](auto& fp, auto a, auto b, auto c) { return op(fp, c, a, b); };
}

constexpr auto FMAVVVM = float_merging(fma);
constexpr auto FMSVVVM = float_merging(fms);
constexpr auto FNMAVVVM = float_merging(fnma);
constexpr auto FNMSVVVM = float_merging(fnms);
constexpr auto FMADDVVVM = float_merging(to_last(fma));
constexpr auto FMSUBVVVM = float_merging(to_last(fms));
constexpr auto FNMADDVVVM = float_merging(to_last(fnma));
constexpr auto FNMSUBVVVM = float_merging(to_last(fnms));

// (x, y, accumulator, index): every lane by lane `index` of y's segment.
template <class Op>
constexpr auto by_indexed(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const VecV& x, const VecV& y, const VecV& accumulator, std::uint32_t index) {
    return map_float_lanes<T>(op, ctx, accumulator, x, segment_lane<T>(y, index));
  };
}
constexpr auto FMAVVVIX = by_indexed(fma);
constexpr auto FMSVVVIX = by_indexed(fms);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/float_multiply_add.def"
#include "sve/veclib/members/define.inc"
