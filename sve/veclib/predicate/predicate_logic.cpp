// Logic on predicates.
#include "sve/veclib/predicate/predicate_logic.h"

#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

// (Pg, Pn, Pm): op on all bits at once, then 0 where inactive.
template <class Op>
constexpr auto zeroing(Op op) {
  return [op](auto, const CpuContext& ctx, const PredV& pg, const PredV& pn, const PredV& pm) {
    return within(pg & op(pn, pm), ctx);
  };
}

constexpr auto AndPPZ = zeroing([](auto n, auto m) { return n & m; });
constexpr auto BicPPZ = zeroing([](auto n, auto m) { return n & ~m; });
constexpr auto OrPPZ = zeroing([](auto n, auto m) { return n | m; });
constexpr auto OrNPPZ = zeroing([](auto n, auto m) { return n | ~m; });
constexpr auto NorPPZ = zeroing([](auto n, auto m) { return ~(n | m); });
constexpr auto NandPPZ = zeroing([](auto n, auto m) { return ~(n & m); });
constexpr auto XorPPZ = zeroing([](auto n, auto m) { return n ^ m; });

constexpr auto AndFlgPPZ = flagged(AndPPZ);
constexpr auto BicFlgPPZ = flagged(BicPPZ);
constexpr auto OrFlgPPZ = flagged(OrPPZ);
constexpr auto OrNFlgPPZ = flagged(OrNPPZ);
constexpr auto NorFlgPPZ = flagged(NorPPZ);
constexpr auto NandFlgPPZ = flagged(NandPPZ);
constexpr auto XorFlgPPZ = flagged(XorPPZ);

constexpr auto SelPP = [](auto, const CpuContext& ctx, const PredV& pg, const PredV& pn, const PredV& pm) {
  return within((pg & pn) | (~pg & pm), ctx);
};

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/predicate/predicate_logic.def"
#include "sve/veclib/members/define.inc"
