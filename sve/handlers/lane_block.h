// Blocks of lanes: what a loop over lanes works on at a time. It reads a block of each source, then writes a block of
// the result: so the compiler moves two 16-byte vectors by one instruction, which it can't where each is read after the
// one before it has been written.
#pragma once

#include <algorithm>
#include <cstddef>

#include "sve/handlers/register_bytes.h"
#include "sve/state/lane_group.h"
#include "sve/state/lane_marks.h"
#include "sve/state/packed_shift.h"

namespace quern {

inline constexpr std::size_t block_bytes = std::min<std::size_t>(VL_BYTES, 4 * sizeof(doubles));
template <class T>
inline constexpr std::size_t block_lanes = block_bytes / sizeof(T);

// Its copies go by vectors, unlike memcpy's, so that the block itself is in registers alone. On AArch64 four go by one
// instruction, which leaves the address of the next block too: the compiler must not know that it could make that anew.
struct lane_block {
  alignas(16) unsigned char bytes[block_bytes];

  lane_block() = default;
  explicit lane_block(const unsigned char* source) { *this = next(source); }

  // By pairs of vectors, which may be any: where operations are not the compiler's own, it would move the four vectors
  // of one instruction to and from others, one by one.
  static lane_block next_by_pairs(const unsigned char*& source) {
    lane_block block;
    copy(block.bytes, source);
    source += block_bytes;
    return block;
  }
  void copy_to_next_by_pairs(unsigned char*& destination) const {
    copy(destination, bytes);
    destination += block_bytes;
  }

  // The block at `source`, which is moved behind it.
  static lane_block next(const unsigned char*& source) {
    lane_block block;
#ifdef __aarch64__
    if constexpr (block_bytes == 64) {
      const uint8x16x4_t groups = vld1q_u8_x4(source);
#pragma GCC unroll 4
      for (std::size_t i = 0; i != 4; ++i) set_lane(block.bytes, i, doubles(groups.val[i]));
      source = formed(source + block_bytes);
      return block;
    }
#endif
    copy(block.bytes, source);
    source += block_bytes;
    return block;
  }

  // To `destination`, which is moved behind it.
  void copy_to_next(unsigned char*& destination) const {
#ifdef __aarch64__
    if constexpr (block_bytes == 64) {
      uint8x16x4_t groups;
#pragma GCC unroll 4
      for (std::size_t i = 0; i != 4; ++i) groups.val[i] = uint8x16_t(lane<doubles>(bytes, i));
      vst1q_u8_x4(destination, groups);
      destination = formed(destination + block_bytes);
      return;
    }
#endif
    copy(destination, bytes);
    destination += block_bytes;
  }

 private:
  static void copy(unsigned char* destination, const unsigned char* source) {
    doubles groups[block_lanes<doubles>];
#pragma GCC unroll 4
    for (std::size_t i = 0; i != block_lanes<doubles>; ++i) groups[i] = lane<doubles>(source, i);
#pragma GCC unroll 4
    for (std::size_t i = 0; i != block_lanes<doubles>; ++i) set_lane(destination, i, groups[i]);
  }
};

// For each lane of T in a block of a predicate, all ones if it is active, else all zeros.
template <class T>
inline lane_block active_masks(const lane_block& predicate) {
  lane_block masks;
#pragma GCC unroll 4
  for (std::size_t i = 0; i != block_lanes<doubles>; ++i)
    set_lane(masks.bytes, i, active_lanes<lane_of<T>>(lane<doubles>(predicate.bytes, i)));
  return masks;
}

// Whether every lane of T is active. By the test that hosts recognise; else in as many partial results as a block has
// groups, lest each waits for the load before it.
template <class T>
inline bool all_active(const unsigned char* predicate) {
#ifdef __aarch64__
  if constexpr (has_lane_marks) return find_inactive<T>(predicate) == 0;
#endif
  constexpr std::size_t parts = block_lanes<doubles>;
  doubles common[parts];
#pragma GCC unroll 4
  for (std::size_t k = 0; k != parts; ++k) common[k] = lane<doubles>(predicate, k);
#pragma GCC unroll 4
  for (std::size_t i = parts; i != lane_count<doubles>; i += parts)
#pragma GCC unroll 4
    for (std::size_t k = 0; k != parts; ++k) common[k] = formed(common[k] & lane<doubles>(predicate, i + k));
#pragma GCC unroll 2
  for (std::size_t half = parts / 2; half != 0; half /= 2)
#pragma GCC unroll 2
    for (std::size_t k = 0; k != half; ++k) common[k] = formed(common[k] & common[k + half]);
  return (~(common[0][0] & common[0][1]) & ones_apiece<T>) == 0;
}

// The bytes of as many blocks as have all active lanes of T.
template <class T>
inline std::size_t active_blocks(const unsigned char* predicate) {
  std::size_t bytes = VL_BYTES;
  for (; bytes != 0; bytes -= block_bytes) {
    const lane_block last(predicate + bytes - block_bytes);
    doubles any = lane<doubles>(last.bytes, 0);
#pragma GCC unroll 4
    for (std::size_t i = 1; i < block_lanes<doubles>; ++i) any |= lane<doubles>(last.bytes, i);
    if (((any[0] | any[1]) & ones_apiece<T>) != 0) break;
  }
  return bytes;
}

// Lane i is op(source's lane i...).
template <class T, class Op, class... Block>
inline lane_block map_block(Op op, const Block&... source) {
  lane_block r;
#pragma GCC ivdep
  for (std::size_t i = 0; i != block_lanes<T>; ++i)
    set_lane<T>(r.bytes, i, static_cast<T>(op(lane<T>(source.bytes, i)...)));
  return r;
}

// What floating-point operations see in the place of an inactive lane, so that it raises no flag: any can take 1.0, and
// products and sums 0, which is made in fewer instructions.
struct ones_if_inactive {
  template <lane_group T>
  T operator()(T active, T x) const {
    return or_one(active, x);
  }
};
struct zeros_if_inactive {
  template <lane_group T>
  T operator()(T active, T x) const {
    return active & x;
  }
};

// The same with such numbers in the inactive lanes. All that op will see is made first: the compiler moves nothing
// across an operation that sets flags, and a processor emulator would wait for each vector.
template <lane_group T, class Seen, class Op, class... Block>
inline lane_block map_block_or(Seen seen, Op op, const lane_block& active, const Block&... source) {
  const auto form = [=](T mask, T x) { return formed(seen(mask, x)); };
  return map_block<T>(op, map_block<T>(form, active, source)...);
}

// d's block = map(block of each source...), block after block.
template <class Map, class... Source>
inline void each_block(Map map, unsigned char* d, const Source*... source) {
#pragma GCC unroll 4
  for (std::size_t b = 0; b != VL_BYTES; b += block_bytes) map(lane_block::next(source)...).copy_to_next(d);
}

// The same for the first `bytes` bytes alone, a multiple of a block's. Not unrolled.
template <class Map, class... Source>
inline void each_block_until(std::size_t bytes, Map map, unsigned char* d, const Source*... source) {
#pragma GCC unroll 1
  for (std::size_t b = 0; b != bytes; b += block_bytes) map(lane_block::next(source)...).copy_to_next(d);
}

}  // namespace quern
