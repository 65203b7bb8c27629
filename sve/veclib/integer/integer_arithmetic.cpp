// Integer sums, differences and extremes.
#include "sve/veclib/integer/integer_arithmetic.h"

#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"
#include "sve/veclib/saturating.h"

namespace quern::veclib {
namespace {

constexpr auto sum = [](auto a, auto b) { return add(a, b); };
constexpr auto difference = [](auto a, auto b) { return subtract(a, b); };
constexpr auto reversed_difference = [](auto a, auto b) { return subtract(b, a); };
constexpr auto absolute_difference = [](auto a, auto b) { return a < b ? subtract(b, a) : subtract(a, b); };
constexpr auto saturating_sum = [](auto a, auto b) { return saturating_add(a, b); };
constexpr auto saturating_difference = [](auto a, auto b) { return saturating_subtract(a, b); };

constexpr auto AddVVM = merging(sum);
constexpr auto SubVVM = merging(difference);
constexpr auto SubRVVM = merging(reversed_difference);
constexpr auto AbdVVM = merging(absolute_difference);
constexpr auto MaxVVM = merging(maximum{});
constexpr auto MinVVM = merging(minimum{});

constexpr auto AddVVX = unpredicated(sum);
constexpr auto SubVVX = unpredicated(difference);
constexpr auto QAddVVX = unpredicated(saturating_sum);
constexpr auto QSubVVX = unpredicated(saturating_difference);

constexpr auto AddVIX = unpredicated(sum);
constexpr auto SubVIX = unpredicated(difference);
constexpr auto SubRVIX = unpredicated(reversed_difference);
constexpr auto MaxVIX = unpredicated(maximum{});
constexpr auto MinVIX = unpredicated(minimum{});
constexpr auto QAddVIX = unpredicated(saturating_sum);
constexpr auto QSubVIX = unpredicated(saturating_difference);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/integer_arithmetic.def"
#include "sve/veclib/members/define.inc"
