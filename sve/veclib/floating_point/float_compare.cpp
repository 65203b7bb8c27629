// Floating-point comparisons into a predicate. They set no condition flags.
#include "sve/veclib/floating_point/float_compare.h"

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto eq = [](auto& fp, auto a, auto b) { return fp.fcmeq(a, b); };
constexpr auto ge = [](auto& fp, auto a, auto b) { return fp.fcmge(a, b); };
constexpr auto gt = [](auto& fp, auto a, auto b) { return fp.fcmgt(a, b); };
constexpr auto ne = [](auto& fp, auto a, auto b) { return ~fp.fcmeq(a, b); };  // true with a NaN
constexpr auto un = [](auto& fp, auto a, auto b) { return fp.fcmuo(a, b); };
constexpr auto le = [](auto& fp, auto a, auto b) { return fp.fcmge(b, a); };
constexpr auto lt = [](auto& fp, auto a, auto b) { return fp.fcmgt(b, a); };

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
    return compare_float_lanes<T>(op, ctx, pg, a, T{0});
  };
}
// The comparison of magnitudes.
template <class Op>
constexpr auto of_absolutes(Op op) {
  return [op](auto& fp, auto a, auto b) { return op(fp, absolute(a), absolute(b)); };
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
