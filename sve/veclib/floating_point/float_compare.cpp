// Floating-point comparisons into a predicate. They set no condition flags.
#include "sve/veclib/floating_point/float_compare.h"

#include "sve/arith/float/compare.h"
#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto eq = []<class T>(T a, T b, FPSCR& fpscr) { return FPCompareEQ<T>(a, b, fpscr); };
constexpr auto ge = []<class T>(T a, T b, FPSCR& fpscr) { return FPCompareGE<T>(a, b, fpscr); };
constexpr auto gt = []<class T>(T a, T b, FPSCR& fpscr) { return FPCompareGT<T>(a, b, fpscr); };
constexpr auto ne = [](auto a, auto b, FPSCR& fpscr) { return !eq(a, b, fpscr); };  // true with a NaN
constexpr auto un = []<class T>(T a, T b, FPSCR& fpscr) { return FPCompareUN<T>(a, b, fpscr); };
constexpr auto le = [](auto a, auto b, FPSCR& fpscr) { return ge(b, a, fpscr); };
constexpr auto lt = [](auto a, auto b, FPSCR& fpscr) { return gt(b, a, fpscr); };

// (Pg, a, b)
template <class Op>
constexpr auto comparing(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const PredV& pg, const VecV& a, const VecV& b) {
    return compare_float_lanes<T>(op, ctx, pg, a, b);
  };
}
// (Pg, a): with zero.
template <class Op>
constexpr auto comparing_with_zero(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const PredV& pg, const VecV& a) {
    const auto with_zero = [op](T lane, FPSCR& fpscr) { return op(lane, T{0}, fpscr); };
    return compare_float_lanes<T>(with_zero, ctx, pg, a);
  };
}
// The comparison of magnitudes.
template <class Op>
constexpr auto of_absolutes(Op op) {
  return [op](auto a, auto b, FPSCR& fpscr) { return op(absolute(a), absolute(b), fpscr); };
}

constexpr auto CmpEQVVZ = comparing(eq);
constexpr auto CmpGEVVZ = comparing(ge);
constexpr auto CmpGTVVZ = comparing(gt);
constexpr auto CmpNEVVZ = comparing(ne);
constexpr auto CmpUNVVZ = comparing(un);
constexpr auto AcGEVVZ = comparing(of_absolutes(ge));
constexpr auto AcGTVVZ = comparing(of_absolutes(gt));

constexpr auto CmpEQV0Z = comparing_with_zero(eq);
constexpr auto CmpGEV0Z = comparing_with_zero(ge);
constexpr auto CmpGTV0Z = comparing_with_zero(gt);
constexpr auto CmpNEV0Z = comparing_with_zero(ne);
constexpr auto CmpLEV0Z = comparing_with_zero(le);
constexpr auto CmpLTV0Z = comparing_with_zero(lt);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/float_compare.def"
#include "sve/veclib/members/define.inc"
