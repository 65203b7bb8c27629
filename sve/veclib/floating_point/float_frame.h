// The frame of floating-point families: the control word of a call's arithmetic is the context's, and what its lanes
// raise is added to the context's status. No lane sees another lane's flags, since an operation only adds to them, and
// a lane that is not active raises none.
//
// An operation on lanes is op(fp, lanes...): fp is a floating-point unit (sve/arith/unit), and op is called with groups
// of lanes on the host's or with single lanes on the software's.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "sve/arith/float/fpscr.h"
#include "sve/arith/float/sign.h"
#include "sve/arith/unit/on_host_unit.h"
#include "sve/arith/unit/software_fp.h"
#include "sve/veclib/frame.h"

namespace quern::veclib {

// What an operation sees of an operand in group i: that group of a vector, and a scalar in each lane.
template <lane_group G>
inline G group_at(const VecV& vector, std::size_t i) {
  return lane<G>(vector.bytes, i);
}
template <lane_group G>
inline G group_at(lane_of<G> scalar, std::size_t) {
  return in_each_lane<G>(scalar);
}

// Group i is op(fp, operands' group i...), by the host's unit. Some groups are computed before any is stored, so that
// the compiler moves two by one instruction.
template <lane_group G, class Op, class Unit, class... Operands>
inline void map_groups(Op op, Unit& fp, VecV& result, const Operands&... operands) {
  constexpr std::size_t some = std::min<std::size_t>(4, lane_count<G>);
#pragma GCC unroll 1
  for (std::size_t i = 0; i != lane_count<G>; i += some) {
    G values[some];
#pragma GCC unroll 4
    for (std::size_t k = 0; k != some; ++k) values[k] = op(fp, group_at<G>(operands, i + k)...);
#pragma GCC unroll 4
    for (std::size_t k = 0; k != some; ++k) set_lane<G>(result.bytes, i + k, values[k]);
  }
}

// Lane i is op(fp, operands' lane i...), for all lanes.
template <class T, class Op, class... Operands>
inline VecV map_float_lanes(Op op, CpuContext& ctx, const Operands&... operands) {
  VecV result;
  const auto by_groups = [&](auto& fp) { map_groups<group_of<T>>(op, fp, result, operands...); };
  if (vector_bytes(ctx) != VL_BYTES || !on_host_unit<T>(ctx, by_groups)) {
    software_fp fp(ctx);
    result = map_lanes<T>([&](auto... lanes) { return op(fp, lanes...); }, ctx, operands...);
  }
  return result;
}

// Lane i is op(fp, operands' lane i...) where `active` is set, else that of `inactive`, by the software's unit. op runs
// for active lanes alone.
template <class T, class Op, class... Operands>
inline VecV merge_in_software(Op op, CpuContext& ctx, const VecV& inactive, const PredV& pg,
                              const Operands&... operands) {
  if (!any_element<T>(within(pg, ctx))) return inactive;
  software_fp fp(ctx);
  return merge_active_lanes<T>([&](auto... lanes) { return op(fp, lanes...); }, ctx, inactive, pg, operands...);
}

// Lane i is plain(operands' lane i...), bits alone, or that of `inactive`. For what the host's unit has no instruction
// for: plain answers in `is_special` if it does not hold for a lane, and then all are left to the software's unit.
template <class T, class Plain, class Op, class... Operands>
inline VecV merge_plain_lanes(Plain plain, Op op, CpuContext& ctx, const VecV& inactive, const PredV& pg,
                              const Operands&... operands) {
  T special = 0;
  const auto noted = [&](auto... lanes) {
    bool is_special = false;
    const T value = plain(is_special, lanes...);
    special = static_cast<T>(special | T{is_special});
    return value;
  };
  const VecV result = merge_lanes<T>(noted, ctx, inactive, pg, operands...);
  if (vector_bytes(ctx) == VL_BYTES && special == 0) return result;
  return merge_in_software<T>(op, ctx, inactive, pg, operands...);
}

// merge_in_software() on the host's unit if it can. There a lane that is not active computes what the first active one
// does, and so raises nothing of its own.
template <class T, class Op, class... Operands>
inline VecV merge_float_lanes(Op op, CpuContext& ctx, const VecV& inactive, const PredV& pg,
                              const Operands&... operands) {
  using group = group_of<T>;
  VecV result;
  const auto by_groups = [&](auto& fp) {
    if (all_active<T>(pg)) return map_groups<group>(op, fp, result, operands...);
    const VecV masks = lane_masks<T>(pg);
    const std::size_t first = first_element<T>(pg);
    for (std::size_t i = 0; i != lane_count<group>; ++i) {
      const group active = lane<group>(masks.bytes, i);
      const group value =
          op(fp, select(active, group_at<group>(operands, i), group_at<group>(operand_at<T>(operands, first), i))...);
      set_lane<group>(result.bytes, i, select(active, value, lane<group>(inactive.bytes, i)));
    }
  };
  const bool is_done =
      vector_bytes(ctx) == VL_BYTES && any_element<T>(within(pg, ctx)) && on_host_unit<T>(ctx, by_groups);
  if (!is_done) result = merge_in_software<T>(op, ctx, inactive, pg, operands...);
  return result;
}

// Element i is op(fp, operands' lane i...), all ones or zeros, where pg has it active, and false elsewhere, where op
// does not run.
template <class T, class Op, class... Operands>
inline PredV compare_float_lanes(Op op, CpuContext& ctx, const PredV& pg, const Operands&... operands) {
  const auto truth = [op]<class... Lane>(auto& fp, Lane... lanes) { return op(fp, lanes...) & 1; };
  return to_predicate<T>(merge_float_lanes<T>(truth, ctx, VecV{}, pg, operands...));
}

// Families, made of an operation on lanes. (operands...): all lanes.
template <class Op>
constexpr auto float_unpredicated(Op op) {
  return
      [op]<class T>(T, CpuContext& ctx, const auto&... operands) { return map_float_lanes<T>(op, ctx, operands...); };
}

// (a, Pg, others...): op(a, others...), and a where inactive.
template <class Op>
constexpr auto float_merging(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const VecV& a, const PredV& pg, const auto&... others) {
    return merge_float_lanes<T>(op, ctx, a, pg, a, others...);
  };
}

// (old, Pg, a): op(a), and old where inactive.
template <class Op>
constexpr auto float_merging_unary(Op op) {
  return [op]<class T>(T, CpuContext& ctx, const VecV& old, const PredV& pg, const VecV& a) {
    return merge_float_lanes<T>(op, ctx, old, pg, a);
  };
}

// The sign cleared or flipped, of a NaN too; no flag is raised. Of a lane or a group.
inline constexpr auto absolute = [](auto a) { return FPAbs(a); };
inline constexpr auto negated = [](auto a) { return FPNeg(a); };

// The vector whose every lane is lane `index` of its own 128-bit segment of `vector`.
template <class T>
inline VecV segment_lane(const VecV& vector, std::uint32_t index) {
  using segment = group_of<T>;
  VecV result;
  for (std::size_t i = 0; i != lane_count<segment>; ++i)
    set_lane<segment>(result.bytes, i, in_each_lane<segment>(lane<T>(vector.bytes, i * group_lanes<segment> + index)));
  return result;
}

}  // namespace quern::veclib
