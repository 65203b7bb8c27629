// Registers, memory and vector values as lanes of an element type, and the choice of that type by a size code.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "sve/state/operands.h"
#include "sve/state/vector_length.h"

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

// d[i] = op(source[i]...), all lanes, by an operation that vectors don't have. d is a source, or apart from it. Some
// lanes are computed before any is stored, so that two are moved by one instruction.
template <class T, class Op, class... Source>
inline void each_scalar_lane(Op op, unsigned char* d, const Source*... source) {
  constexpr std::size_t some = std::min<std::size_t>(4, lane_count<T>);
#pragma GCC unroll 1
  for (std::size_t i = 0; i != lane_count<T>; i += some) {
    T values[some];
#pragma GCC unroll 4
    for (std::size_t k = 0; k != some; ++k) values[k] = static_cast<T>(op(lane<T>(source, i + k)...));
#pragma GCC unroll 4
    for (std::size_t k = 0; k != some; ++k) set_lane<T>(d, i + k, values[k]);
  }
}

// Writes a scalar result: element 0 of the vector, all above it zero.
template <class T>
inline void set_scalar(unsigned char* d, T value) {
  std::memset(d, 0, VL_BYTES);
  set_lane<T>(d, 0, value);
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

// The element types that an operation has, the one that a size code names among them. A code of none of them names the
// last.
template <class T, class... Others>
struct element_types {
  // Calls f with a value of the type.
  template <class F>
  static void by_size(std::uint32_t code, F f) {
    if constexpr (sizeof...(Others) == 0) {
      f(T{});
    } else {
      if (code == size_code<T>) return f(T{});
      element_types<Others...>::by_size(code, f);
    }
  }
};
using all_element_types = element_types<std::uint32_t, std::uint64_t, std::uint16_t, std::uint8_t>;

// The same, but a code of none of them names none: f is not called.
template <class... T>
struct exact_element_types {
  template <class F>
  static void by_size(std::uint32_t code, F f) {
    static_cast<void>(((code == size_code<T> && (f(T{}), true)) || ...));
  }
};

// Calls f with a value of the unsigned (signed) element type that a size code names. Any code but 1, 2, 3 is byte.
template <class F>
inline void by_size(std::uint32_t code, F f) {
  all_element_types::by_size(code, f);
}
template <class F>
inline void by_signed_size(std::uint32_t code, F f) {
  by_size(code, [&]<class T>(T) { f(std::make_signed_t<T>{}); });
}

}  // namespace quern
