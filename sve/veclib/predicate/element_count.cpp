// Counts of elements, and what they are added to.
#include "sve/veclib/predicate/element_count.h"

#include <bit>

#include "sve/arith/integer/saturation.h"
#include "sve/arith/predicate/predicate_support.h"
#include "sve/state/integer_operations.h"
#include "sve/veclib/frame.h"
#include "sve/veclib/saturating.h"

namespace quern::veclib {
namespace {

template <class T>
std::uint64_t counted(const CpuContext& ctx, std::uint64_t pattern, std::uint64_t field) {
  const int all = static_cast<int>(std::uint64_t{ctx.vl_units & 0x3FFFFFF} * (8 / sizeof(T)));
  return static_cast<std::uint64_t>(VecTrueILength(pattern, all)) * (field + 1);
}
template <class T>
std::uint64_t counted(const CpuContext& ctx, const PredV& predicate) {
  const PredV active = elements<T>(within(predicate, ctx));
  int count = 0;
  for (const std::uint64_t word : active.words) count += std::popcount(word);
  return static_cast<std::uint64_t>(count);
}

// What becomes of a value and a count. A count is never negative, and saturating by an unsigned number is the cheaper.
constexpr auto sum = [](auto value, auto count) { return add(value, count); };
constexpr auto difference = [](auto value, auto count) { return subtract(value, count); };
constexpr auto saturating_sum = [](auto value, auto count) { return saturating_add(value, as_unsigned(count)); };
constexpr auto saturating_difference = [](auto value, auto count) {
  return saturating_subtract(value, as_unsigned(count));
};

// The same in the range of Bits bits that has the sign of the tag: SatAdd or SatSub.
template <auto Saturate, int Bits>
constexpr auto saturated = []<class T>(T, std::uint64_t value, std::uint64_t count) {
  return Saturate(value, count, Bits, std::is_unsigned_v<T>).value;
};
template <auto Op>
constexpr auto wrapped = []<class T>(T, std::uint64_t value, std::uint64_t count) { return Op(value, count); };

template <class Op>
constexpr auto scalar_by_pattern(Op op) {
  return [op]<class T>(T tag, const CpuContext& ctx, auto value, std::uint64_t pattern, std::uint64_t field) {
    return static_cast<decltype(value)>(op(tag, value, counted<T>(ctx, pattern, field)));
  };
}
template <class Op>
constexpr auto scalar_by_predicate(Op op) {
  return [op]<class T>(T tag, const CpuContext& ctx, const PredV& predicate, auto value) {
    return static_cast<decltype(value)>(op(tag, value, counted<T>(ctx, predicate)));
  };
}
template <class Op>
constexpr auto vector_by_pattern(Op op) {
  return [op]<class T>(T, const CpuContext& ctx, const VecV& a, std::uint64_t pattern, std::uint64_t field) {
    return map_lanes<T>(op, ctx, a, static_cast<T>(counted<T>(ctx, pattern, field)));
  };
}
template <class Op>
constexpr auto vector_by_predicate(Op op) {
  return [op]<class T>(T, const CpuContext& ctx, const PredV& predicate, const VecV& a) {
    return map_lanes<T>(op, ctx, a, static_cast<T>(counted<T>(ctx, predicate)));
  };
}

constexpr auto SCountP = []<class T>(T, const CpuContext& ctx, const PredV& pg, const PredV& pn) {
  return static_cast<std::int64_t>(counted<T>(ctx, pg & pn));
};
constexpr auto CountVLSI = []<class T>(T, const CpuContext& ctx, std::uint64_t pattern, std::uint64_t field) {
  return counted<T>(ctx, pattern, field);
};
constexpr auto IncrVLSI = scalar_by_pattern(wrapped<sum>);
constexpr auto DecrVLSI = scalar_by_pattern(wrapped<difference>);
constexpr auto QIncrVL4SI = scalar_by_pattern(saturated<SatAdd, 32>);
constexpr auto QDecrVL4SI = scalar_by_pattern(saturated<SatSub, 32>);
constexpr auto QIncrVL8SI = scalar_by_pattern(saturated<SatAdd, 64>);
constexpr auto QDecrVL8SI = scalar_by_pattern(saturated<SatSub, 64>);
constexpr auto IncrVLVI = vector_by_pattern(sum);
constexpr auto DecrVLVI = vector_by_pattern(difference);
constexpr auto QIncrVLVI = vector_by_pattern(saturating_sum);
constexpr auto QDecrVLVI = vector_by_pattern(saturating_difference);

constexpr auto IncrSCountPS = scalar_by_predicate(wrapped<sum>);
constexpr auto DecrSCountPS = scalar_by_predicate(wrapped<difference>);
constexpr auto QIncrSCount4PS = scalar_by_predicate(saturated<SatAdd, 32>);
constexpr auto QDecrSCount4PS = scalar_by_predicate(saturated<SatSub, 32>);
constexpr auto QIncrSCount8PS = scalar_by_predicate(saturated<SatAdd, 64>);
constexpr auto QDecrSCount8PS = scalar_by_predicate(saturated<SatSub, 64>);
constexpr auto IncrCountPV = vector_by_predicate(sum);
constexpr auto DecrCountPV = vector_by_predicate(difference);
constexpr auto QIncrCountPV = vector_by_predicate(saturating_sum);
constexpr auto QDecrCountPV = vector_by_predicate(saturating_difference);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/predicate/element_count.def"
#include "sve/veclib/members/define.inc"
