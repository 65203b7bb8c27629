// Element-wise integer arithmetic.
#include "sve/veclib/integer/arithmetic.h"

#include "sve/veclib/frame.h"
#include "sve/veclib/integer/wrapping.h"

namespace quern::veclib {
namespace {

constexpr auto AbdVVM = merging([](auto a, auto b) { return a < b ? difference(b, a) : difference(a, b); });

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/integer/arithmetic.def"
#include "sve/veclib/members/define.inc"
