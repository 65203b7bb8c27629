// The test of a predicate.
#include "sve/veclib/predicate/predicate_flags.h"

#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto TestPZ = [](auto, CpuContext& ctx, const PredV& pg, const PredV& pn) {
  with_flags<std::uint8_t>(pn, pg, ctx);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/predicate/predicate_flags.def"
#include "sve/veclib/members/define.inc"
