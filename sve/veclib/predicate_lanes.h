// Elements of packed predicates: reading and writing one, and all of a predicate's as masks for the lanes of a vector.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <utility>

#include "sve/state/cpu_context.h"
#include "sve/state/integer_operations.h"
#include "sve/state/lane_group.h"
#include "sve/state/predicate_bits.h"

namespace quern::veclib {

// The lowest bit of each element of T's width in a word of a predicate, and the bits of element 0.
template <class T>
inline constexpr std::uint64_t lowest_bits = ~std::uint64_t{0} / ((1u << sizeof(T)) - 1);
template <class T>
inline constexpr std::uint64_t group_bits = (1u << sizeof(T)) - 1;

// Whether element i is active: its lowest bit. The others of its sizeof(T) bits don't count.
template <class T>
inline bool is_active(const PredV& predicate, std::size_t i) {
  const std::size_t bit = i * sizeof(T);
  return (predicate.words[bit / 64] >> bit % 64 & 1) != 0;
}

// Makes element i `active`, and the others of its bits 0.
template <class T>
inline void set_element(PredV& predicate, std::size_t i, bool active) {
  const std::size_t bit = i * sizeof(T);
  std::uint64_t& word = predicate.words[bit / 64];
  word = (word & ~(group_bits<T> << bit % 64)) | std::uint64_t{active} << bit % 64;
}

// All bits of predicates at once.
template <class Op, class... Predicates>
inline PredV map_words(Op op, const Predicates&... predicates) {
  PredV result;
  for (std::size_t w = 0; w != std::size(result.words); ++w) result.words[w] = op(predicates.words[w]...);
  return result;
}
inline PredV operator~(const PredV& a) { return map_words(std::bit_not{}, a); }
inline PredV operator&(const PredV& a, const PredV& b) { return map_words(std::bit_and{}, a, b); }
inline PredV operator|(const PredV& a, const PredV& b) { return map_words(std::bit_or{}, a, b); }
inline PredV operator^(const PredV& a, const PredV& b) { return map_words(std::bit_xor{}, a, b); }

// The predicate whose first `count` elements of T's width are active, at most those that there are.
template <class T>
inline PredV first_elements(std::size_t count) {
  PredV result;
  for (std::size_t w = 0; w != std::size(result.words); ++w) {
    const std::size_t bits = count * sizeof(T), below = 64 * w;
    const std::uint64_t wanted = bits <= below        ? 0
                                 : bits - below >= 64 ? ~std::uint64_t{0}
                                                      : (std::uint64_t{1} << (bits - below)) - 1;
    result.words[w] = lowest_bits<T> & wanted;
  }
  return result;
}

// Whether all elements of T's width are active.
template <class T>
inline bool all_active(const PredV& predicate) {
  const PredV all = first_elements<T>(lane_count<T>);
  std::uint64_t missing = 0;
  for (std::size_t w = 0; w != std::size(all.words); ++w) missing |= all.words[w] & ~predicate.words[w];
  return missing == 0;
}

// The elements of T's width that are active, each as its lowest bit alone.
template <class T>
inline PredV elements(PredV predicate) {
  for (std::uint64_t& word : predicate.words) word &= lowest_bits<T>;
  return predicate;
}

// The first active element, and whether there is one at all.
template <class T>
inline std::size_t first_element(const PredV& predicate) {
  std::size_t w = 0;
  while (w + 1 != std::size(predicate.words) && (predicate.words[w] & lowest_bits<T>) == 0) ++w;
  return (64 * w + static_cast<std::size_t>(std::countr_zero(predicate.words[w] & lowest_bits<T>))) / sizeof(T);
}
template <class T>
inline bool any_element(const PredV& predicate) {
  std::uint64_t any = 0;
  for (const std::uint64_t word : predicate.words) any |= word;
  return (any & lowest_bits<T>) != 0;
}

// The last active element, where there is one.
template <class T>
inline std::size_t last_element(const PredV& predicate) {
  std::size_t w = std::size(predicate.words) - 1;
  while (w != 0 && (predicate.words[w] & lowest_bits<T>) == 0) --w;
  return (64 * w + 63 - static_cast<std::size_t>(std::countl_zero(predicate.words[w] & lowest_bits<T>))) / sizeof(T);
}

// One byte for each element of T's width: 1 where it is active, else 0.
template <class T>
inline void unpack_elements(const PredV& predicate, unsigned char (&active)[VL_BYTES / sizeof(T)]) {
  unsigned char image[sizeof(PredV)];
  std::memcpy(image, &predicate, sizeof image);
  if constexpr (sizeof(T) == 1) return unpack_predicate(image, active);
  constexpr std::size_t elements = 8 / sizeof(T);  // in a byte of the image
  for (std::size_t j = 0; j != predicate_image_bytes; ++j) {
    for (std::size_t k = 0; k != elements; ++k) active[j * elements + k] = image[j] >> k * sizeof(T) & 1;
  }
}

// In each lane of a vector's 16 bytes that shows the same 16 bits of a predicate, the bit that is the lane's own.
template <class T>
inline constexpr group_of<T> own_bits = []<std::size_t... I>(std::index_sequence<I...>) {
  return group_of<T>{static_cast<T>(T{1} << I * sizeof(T) % element_bits<T>)...};
}
(std::make_index_sequence<16 / sizeof(T)>{});

// Lane i is all ones where element i is active, else all zeros. Not inlined, as it is long and every predicated family
// has it; and mostly all lanes are active.
template <class T>
[[gnu::noinline]] VecV lane_masks(const PredV& predicate) {
  VecV masks;
  if (all_active<T>(predicate)) {
    std::memset(masks.bytes, 0xFF, sizeof masks.bytes);
    return masks;
  }
  unsigned char image[sizeof(PredV)];
  std::memcpy(image, &predicate, sizeof image);
  for (std::size_t i = 0; i != lane_count<halves>; ++i) {
    const halves bits = in_each_lane<halves>(lane<std::uint16_t>(image, i));
    group_of<T> shown = group_of<T>(bits);
    if constexpr (sizeof(T) == 1) shown = shuffle<[](int k, int) { return k / 8; }>(shown, shown);
    set_lane(masks.bytes, i, group_of<T>((shown & own_bits<T>) != 0));
  }
  return masks;
}

// The predicate whose element i is bit 0 of lane i; the lane's other bits are 0.
template <class T>
inline PredV to_predicate(const VecV& lanes) {
  return to_pred(lanes.bytes);
}

}  // namespace quern::veclib
