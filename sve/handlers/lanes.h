// Registers as lanes of an element type, and the loops that handlers share. A handler is its operation; the loop around
// it, the predicate and the order of reading and writing are here, once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "sve/state/cpu_state.h"

namespace quern {

template <class T>
inline constexpr std::size_t lane_count = VL_BYTES / sizeof(T);

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

// All ones when lane i is active, all zeros when not, in T's width: what a predicated loop selects by without a branch.
template <class T>
inline T active_mask(const unsigned char* predicate, std::size_t i) {
  using U = std::make_unsigned_t<T>;
  return static_cast<T>(U{0} - (lane<U>(predicate, i) & U{1}));
}

// A whole result, built before the destination changes, so that the destination may be any source.
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

// d[i] = op(a[i]), every lane.
template <class T, class Op>
inline void each_lane(unsigned char* d, const unsigned char* a, Op op) {
  vector_result r;
  for (std::size_t i = 0; i != lane_count<T>; ++i) set_lane<T>(r.bytes, i, static_cast<T>(op(lane<T>(a, i))));
  r.copy_to(d);
}

// d[i] = op(a[i], b[i]), every lane.
template <class T, class Op>
inline void each_lane(unsigned char* d, const unsigned char* a, const unsigned char* b, Op op) {
  vector_result r;
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    set_lane<T>(r.bytes, i, static_cast<T>(op(lane<T>(a, i), lane<T>(b, i))));
  r.copy_to(d);
}

// d[i] = compute(i) where the lane is active, else the old d[i]. compute runs for inactive lanes too, so that the loop
// has no branch: it must be harmless there.
template <class T, class Compute>
inline void merging(unsigned char* d, const unsigned char* pg, Compute compute) {
  vector_result r;
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    const T active = active_mask<T>(pg, i);
    set_lane<T>(r.bytes, i, static_cast<T>((static_cast<T>(compute(i)) & active) | (lane<T>(d, i) & ~active)));
  }
  r.copy_to(d);
}

}  // namespace quern
