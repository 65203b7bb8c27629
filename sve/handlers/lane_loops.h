// The loops over lanes that handlers share. A handler is its operation; the loop around it, the predicate and the order
// of reading and writing are here, once.
#pragma once

#include <cstddef>
#include <functional>

#include "sve/handlers/lane_block.h"
#include "sve/handlers/register_bytes.h"

namespace quern {

// The loops below run in place: lane i of the result comes from lane i of each source alone, and two registers are
// either the same or apart. So the destination may be any source, and no whole result need be built first.

// d[i] = op(source[i]...), every lane.
template <class T, class Op, class... Source>
inline void each_lane(Op op, unsigned char* d, const Source*... source) {
  each_block([=](const auto&... block) { return map_block<T>(op, block...); }, d, source...);
}

// The same, unrolled no further than a block. For floating point, whose operations take so long that the loop's own
// instructions don't count, while a processor emulator makes far more code of them than stays in a cache. By pairs of
// vectors, as the operations are not the compiler's own.
template <class T, class Op, class... Source>
inline void each_lane_in_turn(Op op, unsigned char* d, const Source*... source) {
#pragma GCC unroll 1
  for (std::size_t b = 0; b != VL_BYTES; b += block_bytes)
    map_block<T>(op, lane_block::next_by_pairs(source)...).copy_to_next_by_pairs(d);
}

// All groups of d are one, and all its lanes one number.
template <lane_group T>
inline void fill_groups(unsigned char* d, T group) {
#pragma GCC unroll 16
  for (std::size_t i = 0; i != lane_count<T>; ++i) set_lane(d, i, group);
}
template <class T>
inline void fill_lanes(unsigned char* d, T value) {
  fill_groups(d, in_each_lane<group_of<T>>(value));
}

// d[i] = op(all ones or all zeros, source[i]...), every lane: ones where it is active.
template <class T, class Op, class... Source>
inline void each_masked_lane(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
  each_block([=](const lane_block& predicate,
                 const auto&... block) { return map_block<T>(op, active_masks<T>(predicate), block...); },
             d, pg, source...);
}

// d[i] = op(source[i]...) where the lane is active, else the old d[i]. op runs for inactive lanes too, so that the loop
// has no branch: it must be harmless there.
template <class T, class Op, class... Source>
inline void merge_lanes(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
  each_masked_lane<T>([=](T active, T old, auto... x) { return select(active, static_cast<T>(op(x...)), old); }, d, pg,
                      d, source...);
}

// The same, but op runs for active lanes alone: for an operation that costs far more than a branch, or must not run.
template <class T, class Op, class... Source>
inline void pass_over_lanes(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
  const std::size_t count = active_blocks<T>(pg) / sizeof(T);
  for (std::size_t i = 0; i != count; ++i)
    if (is_active<T>(pg, i)) set_lane<T>(d, i, static_cast<T>(op(lane<T>(source, i)...)));
}

// The same on groups of floating-point lanes: in an inactive lane op sees 1.0 or 0 in place of its sources, and so
// raises no flag. What comes after the last active lane is left out, as short loops leave most. The addresses are
// formed anew, so that nothing is loaded before it is known whether all lanes are active: that would keep it in many
// registers, and a host may have to save those that are written.
template <lane_group T, class Seen, class Op, class... Source>
inline void merge_lanes_or(Seen seen, Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
  if (all_active<lane_of<T>>(pg)) return each_lane_in_turn<T>(op, d, source...);
  const auto merged = [=](const lane_block& predicate, const lane_block& old, const auto&... block) {
    const lane_block active = active_masks<T>(predicate);
    return map_block<T>([](T mask, T x, T kept) { return select(mask, x, kept); }, active,
                        map_block_or<T>(seen, op, active, block...), old);
  };
  each_block_until(active_blocks<lane_of<T>>(pg), merged, formed(d), formed(pg), formed(d), formed(source)...);
}

// d[i] = op(source[i]...) where the lane is active, else 0. op runs for inactive lanes too.
template <class T, class Op, class... Source>
inline void zero_lanes(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
  each_masked_lane<T>([=](T active, auto... x) { return static_cast<T>(op(x...)) & active; }, d, pg, source...);
}

// The same on groups of floating-point lanes, of which op sees 1.0 where they are inactive.
template <lane_group T, class Op, class... Source>
inline void zero_lanes_or_ones(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
  const auto map = [=](const auto&... block) { return map_block<T>(op, block...); };
  if (all_active<lane_of<T>>(pg)) return each_block_until(VL_BYTES, map, d, source...);
  each_block(
      [=](const lane_block& predicate, const auto&... block) {
        const lane_block active = active_masks<T>(predicate);
        return map_block<T>(std::bit_and{}, map_block_or<T>(ones_if_inactive{}, op, active, block...), active);
      },
      formed(d), formed(pg), formed(source)...);
}

// d[i] = yes[i] where the lane is active, else no[i].
template <class T>
inline void select_lanes(unsigned char* d, const unsigned char* pg, const unsigned char* yes, const unsigned char* no) {
  each_masked_lane<group_of<T>>([](auto active, auto y, auto n) { return select(active, y, n); }, d, pg, yes, no);
}

// op over all active lanes of `source`, from `neutral` on: op(x, neutral) is x. The accumulator may be wider than the
// lanes. op has to be associative and commutative, as the compiler makes it several partial results.
template <class T, class Accumulator, class Op>
inline Accumulator fold_active_lanes(Op op, Accumulator neutral, const unsigned char* pg, const unsigned char* source) {
  Accumulator folded = neutral;
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const T value = select(active_mask<T>(pg, i), lane<T>(source, i), static_cast<T>(neutral));
    folded = static_cast<Accumulator>(op(folded, static_cast<Accumulator>(value)));
  }
  return folded;
}

}  // namespace quern
