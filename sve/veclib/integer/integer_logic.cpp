// Bitwise logic.
#include "sve/veclib/integer/integer_logic.h"

#include <functional>

#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto bit_clear = [](auto a, auto b) { return a & ~b; };

constexpr auto AndVVM = merging(std::bit_and{});
constexpr auto OrVVM = merging(std::bit_or{});
constexpr auto XorVVM = merging(std::bit_xor{});
constexpr auto BicVVM = merging(bit_clear);

constexpr auto AndVVX = unpredicated(std::bit_and{});
constexpr auto OrVVX = unpredicated(std::bit_or{});
constexpr auto XorVVX = unpredicated(std::bit_xor{});
constexpr auto BicVVX = unpredicated(bit_clear);

constexpr auto AndVIX = unpredicated(std::bit_and{});
constexpr auto OrVIX = unpredicated(std::bit_or{});
constexpr auto XorVIX = unpredicated(std::bit_xor{});

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/integer_logic.def"
#include "sve/veclib/members/define.inc"
