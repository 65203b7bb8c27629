// Breaks, and the first and next elements.
#include "sve/veclib/predicate/predicate_break.h"

#include "sve/arith/predicate/predicate_support.h"
#include "sve/veclib/frame.h"
#include "sve/veclib/predicate/predicate_scan.h"

namespace quern::veclib {
namespace {

template <upper_bound Bound>
PredV active_to_break(const CpuContext& ctx, const PredV& pg, const PredV& breaks) {
  return within(pg & bits_to_first<Bound>(pg & breaks), ctx);
}

// (Pg, Pn)
template <upper_bound Bound>
constexpr auto break_zeroing =
    [](auto, const CpuContext& ctx, const PredV& pg, const PredV& pn) { return active_to_break<Bound>(ctx, pg, pn); };

// (old Pd, Pg, Pn)
template <upper_bound Bound>
constexpr auto break_merging = [](auto, const CpuContext& ctx, const PredV& old, const PredV& pg, const PredV& pn) {
  return active_to_break<Bound>(ctx, pg, pn) | within(old & ~pg, ctx);
};

constexpr auto BreakAPZ = break_zeroing<upper_bound::included>;
constexpr auto BreakBPZ = break_zeroing<upper_bound::excluded>;
constexpr auto BreakAFlgPZ = flagged(BreakAPZ);
constexpr auto BreakBFlgPZ = flagged(BreakBPZ);
constexpr auto BreakAPM = break_merging<upper_bound::included>;
constexpr auto BreakBPM = break_merging<upper_bound::excluded>;

// Whether pn has the last active element: false where none is active.
bool has_last_active(const PredV& pg, const PredV& pn, CpuContext& ctx) {
  const int last = FindLastActive(pg, 8, &ctx);
  return last >= 0 && is_active<std::uint8_t>(pn, static_cast<std::size_t>(last));
}

constexpr auto BreakNextPZ = [](auto, CpuContext& ctx, const PredV& pg, const PredV& pn, const PredV& pdm) {
  return has_last_active(pg, pn, ctx) ? within(pdm, ctx) : PredV{};
};
constexpr auto BreakNextFlgPZ = [](auto type, CpuContext& ctx, const PredV& pg, const PredV& pn, const PredV& pdm) {
  return with_flags<std::uint8_t>(BreakNextPZ(type, ctx, pg, pn, pdm), all_elements<std::uint8_t>(ctx), ctx);
};

// (Pg, Pn, Pm)
template <upper_bound Bound>
constexpr auto break_from_previous = [](auto, CpuContext& ctx, const PredV& pg, const PredV& pn, const PredV& pm) {
  return has_last_active(pg, pn, ctx) ? active_to_break<Bound>(ctx, pg, pm) : PredV{};
};

constexpr auto BreakPrevAPZ = break_from_previous<upper_bound::included>;
constexpr auto BreakPrevBPZ = break_from_previous<upper_bound::excluded>;
constexpr auto BreakPrevAFlgPZ = flagged(BreakPrevAPZ);
constexpr auto BreakPrevBFlgPZ = flagged(BreakPrevBPZ);

constexpr auto SetFirstActiveP = flagged(
    [](auto, const CpuContext& ctx, const PredV& pg, const PredV& pdn) { return within(pdn | first_bit(pg), ctx); });

constexpr auto GenNextP = flagged([]<class T>(T, CpuContext& ctx, const PredV& pg, const PredV& pdn) {
  const int last = FindLastActive(pdn, static_cast<int>(8 * sizeof(T)), &ctx);
  const PredV passed = first_elements<T>(static_cast<std::size_t>(last) + 1);  // none is -1: element 0 comes next
  return first_bit(pg & all_elements<T>(ctx) & ~passed);
});

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/predicate/predicate_break.def"
#include "sve/veclib/members/define.inc"
