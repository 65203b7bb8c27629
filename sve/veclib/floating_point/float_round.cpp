// Rounding to an integral floating-point number.
#include "sve/veclib/floating_point/float_round.h"

#include "sve/arith/float/round_to_integral.h"
#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto rounding = [](FPRounding request) {
  return float_merging_unary([request]<class T>(T a, FPSCR& fpscr) { return FPRoundInt<T>(a, request, false, fpscr); });
};
// By the context's own mode; an inexact result is reported, or not.
constexpr auto rounding_by_mode = [](bool exact) {
  return float_merging_unary(
      [exact]<class T>(T a, FPSCR& fpscr) { return FPRoundInt<T>(a, rounding_of(fpscr), exact, fpscr); });
};

constexpr auto FRIntNVM = rounding(FPRounding_TIEEVEN);
constexpr auto FRIntPVM = rounding(FPRounding_POSINF);
constexpr auto FRIntMVM = rounding(FPRounding_NEGINF);
constexpr auto FRIntZVM = rounding(FPRounding_ZERO);
constexpr auto FRIntAVM = rounding(FPRounding_TIEAWAY);
constexpr auto FRIntIVM = rounding_by_mode(false);
constexpr auto FRIntXVM = rounding_by_mode(true);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/float_round.def"
#include "sve/veclib/members/define.inc"
