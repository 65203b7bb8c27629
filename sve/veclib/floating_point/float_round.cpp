// Rounding to an integral floating-point number.
#include "sve/veclib/floating_point/float_round.h"

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

constexpr auto FRIntNVM = float_merging_unary([](auto& fp, auto a) { return fp.frintn(a); });
constexpr auto FRIntPVM = float_merging_unary([](auto& fp, auto a) { return fp.frintp(a); });
constexpr auto FRIntMVM = float_merging_unary([](auto& fp, auto a) { return fp.frintm(a); });
constexpr auto FRIntZVM = float_merging_unary([](auto& fp, auto a) { return fp.frintz(a); });
constexpr auto FRIntAVM = float_merging_unary([](auto& fp, auto a) { return fp.frinta(a); });
constexpr auto FRIntIVM = float_merging_unary([](auto& fp, auto a) { return fp.frinti(a); });
constexpr auto FRIntXVM = float_merging_unary([](auto& fp, auto a) { return fp.frintx(a); });

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/float_round.def"
#include "sve/veclib/members/define.inc"
