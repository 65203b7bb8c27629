// Groups of lanes: what one 128-bit vector instruction works on. A group stands where a loop over lanes has its element
// type, and arithmetic on it is that of its lanes.
#pragma once

#include <type_traits>
#include <utility>

#include "sve/state/lanes.h"

#ifdef __aarch64__
#include <arm_neon.h>
#endif

namespace quern {

// The group of lanes of a type.
template <class Lane>
struct group_type {
  using type [[gnu::vector_size(16)]] = Lane;
};
template <class Lane>
using group_of = typename group_type<Lane>::type;
using halves = group_of<std::uint16_t>;
using singles = group_of<std::uint32_t>;
using doubles = group_of<std::uint64_t>;

template <class T>
concept lane_group = std::is_same_v<T, group_of<std::uint8_t>> || std::is_same_v<T, halves> ||
    std::is_same_v<T, singles> || std::is_same_v<T, doubles>;

// The type of a group's lanes; any other type is its own.
template <class T>
struct lane_type {
  using type = T;
};
template <lane_group T>
struct lane_type<T> {
  using type = std::remove_cvref_t<decltype(T{}[0])>;
};
template <class T>
using lane_of = typename lane_type<T>::type;

// Group i of the VL_BYTES bytes at `bytes`. Not by a copy, as other lanes: the compiler makes of those of 16 bytes an
// integer's, which it moves singly, or through general registers.
template <lane_group T>
using group_in_bytes [[gnu::may_alias, gnu::aligned(1)]] = T;
template <lane_group T>
inline T lane(const unsigned char* bytes, std::size_t i) {
  return reinterpret_cast<const group_in_bytes<T>*>(bytes)[i];
}
template <lane_group T>
inline void set_lane(unsigned char* bytes, std::size_t i, T value) {
  reinterpret_cast<group_in_bytes<T>*>(bytes)[i] = value;
}

template <lane_group T>
inline constexpr int group_lanes = sizeof(T) / sizeof(lane_of<T>);

// The size code is the lanes'.
template <lane_group T>
inline constexpr std::uint32_t size_code<T> = size_code<lane_of<T>>;

// The group itself, but the compiler knows nothing of how it was made: it would put operations in another order.
template <lane_group T>
inline T formed(T group) {
#ifdef __aarch64__
  asm("" : "+w"(group));
#endif
  return group;
}

// The same value in each lane.
template <lane_group T>
inline T in_each_lane(lane_of<T> value) {
  return value - T{};
}

// 1.0 in each lane: an operand on which no floating-point operation raises a flag, nor does a conversion that takes its
// bits, or their lower half, for a number of another kind.
template <lane_group T>
inline T ones() {
  constexpr std::uint64_t one = group_lanes<T> == 8 ? 0x3C00 : group_lanes<T> == 4 ? 0x3F800000 : 0x3FF0000000000000;
  return in_each_lane<T>(static_cast<lane_of<T>>(one));
}

// For each lane of T in 16 bytes of a predicate, all ones if it is active, else all zeros. On AArch64 by the
// instruction that the compiler makes two of.
template <class T>
inline doubles active_lanes(doubles predicate) {
#ifdef __aarch64__
  if constexpr (sizeof(T) == 1) return doubles(vtstq_u8(uint8x16_t(predicate), vdupq_n_u8(1)));
  if constexpr (sizeof(T) == 2) return doubles(vtstq_u16(uint16x8_t(predicate), vdupq_n_u16(1)));
  if constexpr (sizeof(T) == 4) return doubles(vtstq_u32(uint32x4_t(predicate), vdupq_n_u32(1)));
  return doubles(vtstq_u64(uint64x2_t(predicate), vdupq_n_u64(1)));
#else
  return doubles(-(group_of<std::make_unsigned_t<T>>(predicate) & 1));
#endif
}

template <lane_group T>
inline T active_mask(T predicate_elements) {
  return T(active_lanes<lane_of<T>>(doubles(predicate_elements)));
}

// x in the lanes where the mask is all ones, 1.0 where it is all zeros.
template <lane_group T>
inline T or_one(T active, T x) {
  return select(active, x, ones<T>());
}

// The group whose lane i is lane Index(i, lanes of a group) of a and b as one row.
template <auto Index, lane_group T>
inline T shuffle(T a, T b) {
  constexpr int n = group_lanes<T>;
  return [=]<int... I>(std::integer_sequence<int, I...>) { return __builtin_shufflevector(a, b, Index(I, n)...); }
  (std::make_integer_sequence<int, n>{});
}

// In each lane: the bits of `low` below number By, and above them those of `high` from the lowest on (SLI).
template <std::size_t By, lane_group T>
inline T joined_at(T low, T high) {
  static_assert(By > 0 && By < 8 * sizeof(lane_of<T>));
#ifdef __aarch64__
  if constexpr (sizeof(lane_of<T>) == 1) return T(vsliq_n_u8(uint8x16_t(low), uint8x16_t(high), By));
  if constexpr (sizeof(lane_of<T>) == 2) return T(vsliq_n_u16(uint16x8_t(low), uint16x8_t(high), By));
  if constexpr (sizeof(lane_of<T>) == 4) return T(vsliq_n_u32(uint32x4_t(low), uint32x4_t(high), By));
  if constexpr (sizeof(lane_of<T>) == 8) return T(vsliq_n_u64(uint64x2_t(low), uint64x2_t(high), By));
#endif
  constexpr auto below = static_cast<lane_of<T>>((std::uint64_t{1} << By) - 1);
  return (low & in_each_lane<T>(below)) | high << By;
}

// The lanes of even (odd) number of a and b in turn. On AArch64 by shifting a lane into its neighbour, if one of twice
// its width is there: the permutation takes no longer on a processor, but much longer where one is emulated.
template <lane_group T>
inline T even_in_turn(T a, T b) {
#ifdef __aarch64__
  if constexpr (group_lanes<T> == 16) return T(vsliq_n_u16(uint16x8_t(a), uint16x8_t(b), 8));
  if constexpr (group_lanes<T> == 8) return T(vsliq_n_u32(uint32x4_t(a), uint32x4_t(b), 16));
  if constexpr (group_lanes<T> == 4) return T(vsliq_n_u64(uint64x2_t(a), uint64x2_t(b), 32));
#endif
  constexpr auto even = [](int i, int lanes) { return i - i % 2 + i % 2 * lanes; };
  return shuffle<even>(a, b);
}
template <lane_group T>
inline T odd_in_turn(T a, T b) {
#ifdef __aarch64__
  if constexpr (group_lanes<T> == 16) return T(vsriq_n_u16(uint16x8_t(b), uint16x8_t(a), 8));
  if constexpr (group_lanes<T> == 8) return T(vsriq_n_u32(uint32x4_t(b), uint32x4_t(a), 16));
  if constexpr (group_lanes<T> == 4) return T(vsriq_n_u64(uint64x2_t(b), uint64x2_t(a), 32));
#endif
  constexpr auto odd = [](int i, int lanes) { return i - i % 2 + 1 + i % 2 * lanes; };
  return shuffle<odd>(a, b);
}

// The lanes of even (odd) number, first those of a, then those of b.
inline halves even_lanes(halves a, halves b) { return __builtin_shufflevector(a, b, 0, 2, 4, 6, 8, 10, 12, 14); }
inline singles even_lanes(singles a, singles b) { return __builtin_shufflevector(a, b, 0, 2, 4, 6); }
inline doubles even_lanes(doubles a, doubles b) { return __builtin_shufflevector(a, b, 0, 2); }
inline halves odd_lanes(halves a, halves b) { return __builtin_shufflevector(a, b, 1, 3, 5, 7, 9, 11, 13, 15); }
inline singles odd_lanes(singles a, singles b) { return __builtin_shufflevector(a, b, 1, 3, 5, 7); }
inline doubles odd_lanes(doubles a, doubles b) { return __builtin_shufflevector(a, b, 1, 3); }

// In each pair of lanes: the even one twice, the odd one twice, the two exchanged.
inline halves even_twice(halves a) { return __builtin_shufflevector(a, a, 0, 0, 2, 2, 4, 4, 6, 6); }
inline singles even_twice(singles a) { return __builtin_shufflevector(a, a, 0, 0, 2, 2); }
inline doubles even_twice(doubles a) { return __builtin_shufflevector(a, a, 0, 0); }
inline halves odd_twice(halves a) { return __builtin_shufflevector(a, a, 1, 1, 3, 3, 5, 5, 7, 7); }
inline singles odd_twice(singles a) { return __builtin_shufflevector(a, a, 1, 1, 3, 3); }
inline doubles odd_twice(doubles a) { return __builtin_shufflevector(a, a, 1, 1); }
inline halves exchanged(halves a) { return __builtin_shufflevector(a, a, 1, 0, 3, 2, 5, 4, 7, 6); }
inline singles exchanged(singles a) { return __builtin_shufflevector(a, a, 1, 0, 3, 2); }
inline doubles exchanged(doubles a) { return __builtin_shufflevector(a, a, 1, 0); }

}  // namespace quern
