// The forms that floating-point handlers have in common: the unit made ready, the loop over groups of lanes, the
// operation left. An operation is given the unit and groups of singles or doubles, by the size code, and sees 1.0 or
// 0 in place of what an inactive lane holds, so that it raises no flag there.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/unit/host_fp.h"
#include "sve/handlers/register_loops.h"

namespace quern {

using float_types = exact_element_types<singles, doubles>;

template <lane_group T>
using format_of = float_format<lane_of<T>>;

// The negated number, of a NaN too (FPNeg). No flag.
template <lane_group T>
inline T negated(T x) {
  return x ^ format_of<T>::sign_bit;
}

// Zd = op(fp, Zn), every lane.
template <class Op>
inline aarch64_decode_rc float_zz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, Op op) {
  host_fp fp(*state);
  float_types::by_size(zd.size, [&]<class T>(T) {
    each_lane_in_turn<T>([&](T n) { return op(fp, n); }, bytes_of(state, zd), bytes_of(state, zn));
  });
  return DECODE_OK;
}

// Zd = op(fp, Zn, Zm), every lane.
template <class Op>
inline aarch64_decode_rc float_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm, Op op) {
  host_fp fp(*state);
  float_types::by_size(zd.size, [&]<class T>(T) {
    each_lane_in_turn<T>([&](T n, T m) { return op(fp, n, m); }, bytes_of(state, zd), bytes_of(state, zn),
                         bytes_of(state, zm));
  });
  return DECODE_OK;
}

// Zd = op(fp, Zn), active lanes. Types may be one type, for a handler whose lanes have that size whatever the code.
template <class Types = float_types, class Op>
inline aarch64_decode_rc float_unary(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn, Op op) {
  host_fp fp(*state);
  return merge_unary<Types, inactive_lane::sees_ones>(state, zd, pg, zn, [&](auto n) { return op(fp, n); });
}

// Zdn = op(fp, Zdn, Zm), active lanes.
template <class Op>
inline aarch64_decode_rc float_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, Op op) {
  host_fp fp(*state);
  return merge_zpz<float_types, inactive_lane::sees_ones>(state, zdn, pg, zm,
                                                          [&](auto n, auto m) { return op(fp, n, m); });
}

// Zdn = op(fp, Zdn, second, third), active lanes. For sums of products: it sees 0 in place of what an inactive lane
// holds.
template <class Op>
inline aarch64_decode_rc float_zpzz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg second,
                                    aarch64_z_reg third, Op op) {
  host_fp fp(*state);
  return merge_zpzz<float_types, inactive_lane::sees_zeros>(state, zdn, pg, second, third,
                                                            [&](auto a, auto b, auto c) { return op(fp, a, b, c); });
}

}  // namespace quern
