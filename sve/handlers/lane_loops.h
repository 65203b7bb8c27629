// The loops over lanes that handlers share. A handler is its operation; the loop around it, the predicate and the order
// of reading and writing are here, once.
#pragma once

#include <cstddef>

#include "sve/state/lane_group.h"

namespace quern {

// The loops below run in place and are told that their lanes do not depend on each other (ivdep): lane i of the result
// comes from lane i of each source alone, and two registers are either the same or apart. So the destination may be any
// source, and no whole result need be built first.

// d[i] = op(source[i]...), every lane.
template <class T, class Op, class... Source>
inline void each_lane(Op op, unsigned char* d, const Source*... source) {
#pragma GCC ivdep
  for (std::size_t i = 0; i != lane_count<T>; ++i) set_lane<T>(d, i, static_cast<T>(op(lane<T>(source, i)...)));
}

// d[i] = op(source[i]...) where the lane is active, else the old d[i]. op runs for inactive lanes too, so that the loop
// has no branch: it must be harmless there.
template <class T, class Op, class... Source>
inline void merge_lanes(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
#pragma GCC ivdep
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    set_lane<T>(d, i, select(active_mask<T>(pg, i), static_cast<T>(op(lane<T>(source, i)...)), lane<T>(d, i)));
  }
}

// The same, but op runs for active lanes alone: for an operation that costs far more than a branch, or must not run.
template <class T, class Op, class... Source>
inline void pass_over_lanes(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    if (is_active<T>(pg, i)) set_lane<T>(d, i, static_cast<T>(op(lane<T>(source, i)...)));
}

// The same on groups of floating-point lanes: in an inactive lane op sees 1.0 in place of its sources, and so raises no
// flag. Unrolled whole, which the compiler does by itself for short bodies alone: each access then has its address in
// one register and a constant.
template <lane_group T, class Op, class... Source>
inline void merge_lanes_or_ones(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
#pragma GCC unroll 16
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const T active = active_mask<T>(lane<T>(pg, i));
    set_lane<T>(d, i, select(active, op(or_one(active, lane<T>(source, i))...), lane<T>(d, i)));
  }
}

// d[i] = op(source[i]...) where the lane is active, else 0. op runs for inactive lanes too.
template <class T, class Op, class... Source>
inline void zero_lanes(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
#pragma GCC ivdep
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(d, i, static_cast<T>(static_cast<T>(op(lane<T>(source, i)...)) & active_mask<T>(pg, i)));
}

// The same on groups of floating-point lanes, of which op sees 1.0 where they are inactive.
template <lane_group T, class Op, class... Source>
inline void zero_lanes_or_ones(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
#pragma GCC unroll 16
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const T active = active_mask<T>(lane<T>(pg, i));
    set_lane<T>(d, i, op(or_one(active, lane<T>(source, i))...) & active);
  }
}

// d[i] = yes[i] where the lane is active, else no[i].
template <class T>
inline void select_lanes(unsigned char* d, const unsigned char* pg, const unsigned char* yes, const unsigned char* no) {
  each_lane<T>([](T predicate, T y, T n) { return select(active_mask(predicate), y, n); }, d, pg, yes, no);
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
