// Registers as lanes of an element type, and the loops that handlers share. A handler is its operation; the loop around
// it, the predicate and the order of reading and writing are here, once.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "sve/state/cpu_state.h"

namespace quern {

template <class T>
inline constexpr std::size_t lane_count = VL_BYTES / sizeof(T);

// The size code of T's width.
template <class T>
inline constexpr std::uint32_t size_code = std::bit_width(sizeof(T)) - 1;

// Lane i of the VL_BYTES bytes at `bytes`. A copy of constant size: the compiler makes it one access, or a vector's
// part.
template <class T>
inline T lane(const unsigned char* bytes, std::size_t i) {
  T value;
  std::memcpy(&value, bytes + i * sizeof(T), sizeof(T));
  return value;
}
template <class T>
inline void set_lane(unsigned char* bytes, std::size_t i, T value) {
  std::memcpy(bytes + i * sizeof(T), &value, sizeof(T));
}

// Whether lane i of element type T is active in a predicate's bytes: bit 0 of the element's first byte.
template <class T>
inline bool is_active(const unsigned char* predicate, std::size_t i) {
  return (predicate[i * sizeof(T)] & 1) != 0;
}

// All ones for an active predicate element, all zeros for another, in T's width: what a predicated loop selects by
// without a branch.
template <class T>
inline T active_mask(T predicate_element) {
  using U = std::make_unsigned_t<T>;
  return static_cast<T>(U{0} - (static_cast<U>(predicate_element) & U{1}));
}
template <class T>
inline T active_mask(const unsigned char* predicate, std::size_t i) {
  return active_mask(lane<T>(predicate, i));
}

// `yes` where the mask is all ones, `no` where it is all zeros. In this form because it is one BSL on AArch64.
template <class T>
inline T select(T mask, T yes, T no) {
  return static_cast<T>(no ^ ((no ^ yes) & mask));
}

// A whole result, built before the destination changes, for operations that move data between lanes: so the destination
// may be any source.
struct vector_result {
  alignas(16) unsigned char bytes[VL_BYTES];

  void copy_to(unsigned char* destination) const { std::memcpy(destination, bytes, VL_BYTES); }
};

// Calls f with a value of the unsigned (signed) element type that a size code names. Any code but 1, 2, 3 is byte.
template <class F>
inline void by_size(std::uint32_t code, F f) {
  if (code == size_s) return f(std::uint32_t{});
  if (code == size_d) return f(std::uint64_t{});
  if (code == size_h) return f(std::uint16_t{});
  f(std::uint8_t{});
}
template <class F>
inline void by_signed_size(std::uint32_t code, F f) {
  by_size(code, [&]<class T>(T) { f(std::make_signed_t<T>{}); });
}

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

// d[i] = op(source[i]...) where the lane is active, else 0. op runs for inactive lanes too.
template <class T, class Op, class... Source>
inline void zero_lanes(Op op, unsigned char* d, const unsigned char* pg, const Source*... source) {
#pragma GCC ivdep
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(d, i, static_cast<T>(static_cast<T>(op(lane<T>(source, i)...)) & active_mask<T>(pg, i)));
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

// Writes a scalar result: element 0 of the vector, all above it zero.
template <class T>
inline void set_scalar(unsigned char* d, T value) {
  std::memset(d, 0, VL_BYTES);
  set_lane<T>(d, 0, value);
}

}  // namespace quern
