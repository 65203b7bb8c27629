// What integer handlers have in common beyond their loop: the size taken once, the registers found, the operation left.
// Operations see elements as unsigned numbers and their result is cut to the element, so that all arithmetic wraps.
#pragma once

#include <type_traits>

#include "sve/handlers/lane_loops.h"

namespace quern {

template <class T>
inline constexpr unsigned int element_bits = 8 * sizeof(T);

template <class T>
constexpr auto as_signed(T x) {
  return static_cast<std::make_signed_t<T>>(x);
}

// The low half of a product. Narrow elements would multiply as int, which may overflow.
template <class T>
constexpr T multiply(T a, T b) {
  return static_cast<T>(1u * a * b);
}

// The greater and the smaller of two elements, unsigned and signed. On values, not references: so the compiler sees the
// vector instruction.
struct maximum {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return a < b ? b : a;
  }
};
struct minimum {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return b < a ? b : a;
  }
};
struct signed_maximum {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return static_cast<T>(maximum{}(as_signed(a), as_signed(b)));
  }
};
struct signed_minimum {
  template <class T>
  constexpr T operator()(T a, T b) const {
    return static_cast<T>(minimum{}(as_signed(a), as_signed(b)));
  }
};

// Zd = op(Zn, Zm), every lane.
template <class Op>
inline aarch64_decode_rc each_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm, Op op) {
  by_size(zd.size, [&]<class T>(T) { each_lane<T>(op, state->z[zd.num], state->z[zn.num], state->z[zm.num]); });
  return DECODE_OK;
}

// Zdn = op(Zdn, Zm), active lanes.
template <class Op>
inline aarch64_decode_rc merge_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, Op op) {
  unsigned char* const d = state->z[zdn.num];
  by_size(zdn.dsize, [&]<class T>(T) { merge_lanes<T>(op, d, state->p[pg.num], d, state->z[zm.num]); });
  return DECODE_OK;
}

}  // namespace quern
