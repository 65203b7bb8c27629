// Floating-point reductions to a scalar.
#include "sve/veclib/floating_point/float_reduce.h"

#include <bit>

#include "sve/veclib/floating_point/float_frame.h"

namespace quern::veclib {
namespace {

// A lane's number itself, or in each lane of a group.
template <class Number, class T>
Number operand_as(T number) {
  if constexpr (lane_group<Number>)
    return in_each_lane<Number>(number);
  else
    return number;
}

// The active lanes from lane 0 up are added to the start, one after the other. On the host's unit each lane of a group
// is the sum.
template <class T, class Number, class Unit>
Number ordered_sum(Unit& fp, const CpuContext& ctx, const PredV& pg, T start, const VecV& a) {
  Number sum = operand_as<Number>(start);
  const auto add_lane = [&](std::size_t i) { sum = fp.fadd(sum, operand_as<Number>(lane<T>(a.bytes, i))); };
  if (vector_bytes(ctx) == VL_BYTES && all_active<T>(pg)) {
#pragma GCC unroll 4
    for (std::size_t i = 0; i != lane_count<T>; ++i) add_lane(i);
    return sum;
  }
  for (std::size_t i = 0; i != lanes<T>(ctx); ++i)
    if (is_active<T>(pg, i)) add_lane(i);
  return sum;
}

constexpr auto AddReduceAV = []<class T>(T, CpuContext& ctx, const PredV& pg, T start, const VecV& a) {
  T sum = start;
  if (!any_element<T>(within(pg, ctx))) return sum;
  if (on_host_unit<T>(ctx, [&](auto& fp) { sum = ordered_sum<T, group_of<T>>(fp, ctx, pg, start, a)[0]; })) return sum;
  software_fp fp(ctx);
  return ordered_sum<T, T>(fp, ctx, pg, start, a);
};

// The working values of a tree: the active lanes, and the identity for all others.
template <class T>
VecV leaves(const CpuContext& ctx, const PredV& pg, const VecV& a, T identity) {
  const VecV masks = lane_masks<T>(within(pg, ctx));
  VecV values;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(values.bytes, i, select(lane<T>(masks.bytes, i), lane<T>(a.bytes, i), identity));
  return values;
}

// The root of the tree over all lanes of a VecV, by groups. The levels that have less than a group are computed in all
// its lanes, as often as they go into it, which raises nothing else.
template <class T, class Op, class Unit>
T root_by_groups(Op op, Unit& fp, VecV values) {
  using group = group_of<T>;
  for (std::size_t width = lane_count<group>; width > 1; width /= 2) {
    for (std::size_t i = 0; i != width / 2; ++i) {
      const group low = lane<group>(values.bytes, 2 * i), high = lane<group>(values.bytes, 2 * i + 1);
      set_lane<group>(values.bytes, i, op(fp, even_lanes(low, high), odd_lanes(low, high)));
    }
  }
  group last = lane<group>(values.bytes, 0);
  for (int width = group_lanes<group>; width > 1; width /= 2)
    last = op(fp, even_lanes(last, last), odd_lanes(last, last));
  return last[0];
}

// (Pg, a): neighbours are combined level by level, which decides how a sum is rounded. The identity takes part in the
// calls, so that an inactive lane raises what it would raise.
template <class Op, class Identity>
constexpr auto by_pairs(Op op, Identity identity) {
  return [=]<class T>(T type, CpuContext& ctx, const PredV& pg, const VecV& a) {
    VecV values = leaves<T>(ctx, pg, a, identity(type));
    T root;
    if (vector_bytes(ctx) == VL_BYTES &&
        on_host_unit<T>(ctx, [&](auto& fp) { root = root_by_groups<T>(op, fp, values); }))
      return root;
    software_fp fp(ctx);
    const auto value = [&](std::size_t i) { return lane<T>(values.bytes, i); };
    for (std::size_t width = std::bit_ceil(lanes<T>(ctx)); width > 1; width /= 2) {
      for (std::size_t i = 0; i != width / 2; ++i) set_lane<T>(values.bytes, i, op(fp, value(2 * i), value(2 * i + 1)));
    }
    return value(0);
  };
}

constexpr auto plus_zero = []<class T>(T) { return T{0}; };
constexpr auto plus_infinity = []<class T>(T) { return infinity<T>(0); };
constexpr auto minus_infinity = []<class T>(T) { return infinity<T>(1); };
constexpr auto default_nan = []<class T>(T) { return float_format<T>::default_nan; };

constexpr auto AddReduceFV = by_pairs([](auto& fp, auto a, auto b) { return fp.fadd(a, b); }, plus_zero);
constexpr auto MaxReduceFV = by_pairs([](auto& fp, auto a, auto b) { return fp.fmax(a, b); }, minus_infinity);
constexpr auto MinReduceFV = by_pairs([](auto& fp, auto a, auto b) { return fp.fmin(a, b); }, plus_infinity);
constexpr auto MaxNumReduceFV = by_pairs([](auto& fp, auto a, auto b) { return fp.fmaxnm(a, b); }, default_nan);
constexpr auto MinNumReduceFV = by_pairs([](auto& fp, auto a, auto b) { return fp.fminnm(a, b); }, default_nan);

}  // namespace
}  // namespace quern::veclib

#define MEMBERS "sve/veclib/floating_point/float_reduce.def"
#include "sve/veclib/members/define.inc"
