// The first-fault register, read and written.
#include "sve/veclib/predicate/first_fault_register.h"

#include "sve/veclib/frame.h"

namespace quern::veclib {
namespace {

constexpr auto ReadFFSRP = [](auto, const CpuContext& ctx) { return within(ctx.ffr, ctx); };
constexpr auto ActualP = [](auto, const CpuContext& ctx, const PredV& pg) { return within(ctx.ffr & pg, ctx); };
constexpr auto ActualFlgP = flagged(ActualP);
constexpr auto WriteFFSRP = [](auto, CpuContext& ctx, const PredV& pn) { ctx.ffr = within(pn, ctx); };
constexpr auto ClearFFSR = [](auto, CpuContext& ctx) { ctx.ffr = all_elements<std::uint8_t>(ctx); };

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/predicate/first_fault_register.def"
#include "sve/veclib/members/define.inc"
