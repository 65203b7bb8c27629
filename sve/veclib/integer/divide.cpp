// Integer division.
#include "sve/veclib/integer/divide.h"

#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto DivVVM = merging([](auto a, auto b) { return quotient(a, b); });
constexpr auto DivRVVM = merging([](auto a, auto b) { return quotient(b, a); });

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/divide.def"
#include "sve/veclib/members/define.inc"
