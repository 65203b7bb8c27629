// The loops over lanes for the operands that handlers have: the size taken once, the registers found, the operation
// left. Types (sve/state/lanes.h) tells what elements a handler has, and how a size code chooses among them.
#pragma once

#include "sve/handlers/lane_loops.h"
#include "sve/state/cpu_state.h"

namespace quern {

// What becomes of a merging operation in an inactive lane: the lane keeps its value either way.
enum class inactive_lane : std::uint8_t {
  computed,    // as merge_lanes() does
  sees_ones,   // as merge_lanes_or() does
  sees_zeros,  // the same
};

template <inactive_lane Inactive, class T, class Op, class... Source>
inline void predicated_lanes(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
  if constexpr (Inactive == inactive_lane::computed) {
    merge_lanes<T>(op, d, pg, source...);
  } else if constexpr (Inactive == inactive_lane::sees_ones) {
    merge_lanes_or<T>(ones_if_inactive{}, op, d, pg, source...);
  } else {
    merge_lanes_or<T>(zeros_if_inactive{}, op, d, pg, source...);
  }
}

// Zd = op(Zn, Zm), every lane.
template <class Types = all_element_types, class Op>
inline aarch64_decode_rc each_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm, Op op) {
  Types::by_size(zd.size,
                 [&]<class T>(T) { each_lane<T>(op, bytes_of(state, zd), bytes_of(state, zn), bytes_of(state, zm)); });
  return DECODE_OK;
}

// Zdn = op(Zdn, constant), every lane: the constant is extended, or cut, to the element.
template <class Types = all_element_types, class Op>
inline aarch64_decode_rc each_zi(cpu_state* state, aarch64_z_reg zdn, std::uint64_t constant, Op op) {
  unsigned char* const d = bytes_of(state, zdn);
  Types::by_size(zdn.dsize, [&]<class T>(T) {
    each_lane<T>([op, second = static_cast<T>(constant)](T first) { return op(first, second); }, d, d);
  });
  return DECODE_OK;
}

// Zd = op(Zn), active lanes.
template <class Types = all_element_types, inactive_lane Inactive = inactive_lane::computed, class Op>
inline aarch64_decode_rc merge_unary(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn, Op op) {
  Types::by_size(zd.size, [&]<class T>(T) {
    predicated_lanes<Inactive, T>(op, bytes_of(state, zd), bytes_of(state, pg), bytes_of(state, zn));
  });
  return DECODE_OK;
}

// Zdn = op(Zdn, Zm), active lanes.
template <class Types = all_element_types, inactive_lane Inactive = inactive_lane::computed, class Op>
inline aarch64_decode_rc merge_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, Op op) {
  unsigned char* const d = bytes_of(state, zdn);
  Types::by_size(zdn.dsize, [&]<class T>(T) {
    predicated_lanes<Inactive, T>(op, d, bytes_of(state, pg), d, bytes_of(state, zm));
  });
  return DECODE_OK;
}

// Zdn = op(Zdn, second, third), active lanes.
template <class Types = all_element_types, inactive_lane Inactive = inactive_lane::computed, class Op>
inline aarch64_decode_rc merge_zpzz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg second,
                                    aarch64_z_reg third, Op op) {
  unsigned char* const d = bytes_of(state, zdn);
  Types::by_size(zdn.dsize, [&]<class T>(T) {
    predicated_lanes<Inactive, T>(op, d, bytes_of(state, pg), d, bytes_of(state, second), bytes_of(state, third));
  });
  return DECODE_OK;
}

}  // namespace quern
