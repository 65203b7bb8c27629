// Estimates of reciprocals and reciprocal square roots, and the steps that refine them.
#include "sve/veclib/floating_point/estimate.h"

#include "sve/arith/float/estimate.h"
#include "sve/arith/float/step.h"
#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto RecpEV = float_unpredicated([]<class T>(T a, FPSCR& fpscr) { return FPRecipEstimate<T>(a, fpscr); });
constexpr auto RSqrtEV = float_unpredicated([]<class T>(T a, FPSCR& fpscr) { return FPRSqrtEstimate<T>(a, fpscr); });
constexpr auto RecpSVV =
    float_unpredicated([]<class T>(T a, T b, FPSCR& fpscr) { return FPRecipStepFused<T>(a, b, fpscr); });
constexpr auto RSqrtSVV =
    float_unpredicated([]<class T>(T a, T b, FPSCR& fpscr) { return FPRSqrtStepFused<T>(a, b, fpscr); });
constexpr auto RecpXVM = float_merging_unary([]<class T>(T a, FPSCR& fpscr) { return FPRecpX<T>(a, fpscr); });

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/estimate.def"
#include "sve/veclib/members/define.inc"
