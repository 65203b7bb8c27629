// Estimates of reciprocals and reciprocal square roots, and the steps that refine them.
#include "sve/veclib/floating_point/estimate.h"

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto RecpEV = float_unpredicated([](auto& fp, auto a) { return fp.frecpe(a); });
constexpr auto RSqrtEV = float_unpredicated([](auto& fp, auto a) { return fp.frsqrte(a); });
constexpr auto RecpSVV = float_unpredicated([](auto& fp, auto a, auto b) { return fp.frecps(a, b); });
constexpr auto RSqrtSVV = float_unpredicated([](auto& fp, auto a, auto b) { return fp.frsqrts(a, b); });

// (old, Pg, a). The host has the exponent's reciprocal for scalars alone.
constexpr auto RecpXVM = []<class T>(T, CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
  return merge_in_software<T>([](auto& fp, auto lane) { return fp.frecpx(lane); }, ctx, old, pg, a);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/estimate.def"
#include "sve/veclib/members/define.inc"
