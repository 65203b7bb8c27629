// Searching and counting the set elements of a predicate, and filling its first elements.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "sve/state/lane_group.h"
#include "sve/state/lane_marks.h"
#include "sve/state/packed_shift.h"
#include "sve/state/vector_copy.h"

namespace quern {

// Bit 0 of each element's first byte, in eight predicate bytes: the bits that carry meaning for elements of T's width.
template <class T>
inline constexpr std::uint64_t meaningful_bits = ones_apiece<T>;

// What a search answers when there is no such element.
inline constexpr std::size_t no_element = std::numeric_limits<std::size_t>::max();

// The elements that a search looks at: those set in one predicate, or in two at once.
struct set_in {
  const unsigned char* bytes;

  std::uint64_t word(std::size_t j) const { return lane<std::uint64_t>(bytes, j); }
  doubles group(std::size_t i) const { return lane<doubles>(bytes, i); }
};
struct set_in_both {
  const unsigned char *a, *b;

  std::uint64_t word(std::size_t j) const { return lane<std::uint64_t>(a, j) & lane<std::uint64_t>(b, j); }
  doubles group(std::size_t i) const { return lane<doubles>(a, i) & lane<doubles>(b, i); }
};

inline constexpr std::size_t predicate_words = lane_count<std::uint64_t>;

// The first element that is set, at or after `from` (at most lane_count<T>).
template <class T, class Elements>
inline std::size_t first_element(Elements elements, std::size_t from = 0) {
  const std::size_t bit = 8 * sizeof(T) * from;
  std::uint64_t wanted = meaningful_bits<T> << bit % 64;
  for (std::size_t j = bit / 64; j < predicate_words; ++j, wanted = meaningful_bits<T>) {
    if (const std::uint64_t found = elements.word(j) & wanted; found != 0)
      return (64 * j + static_cast<std::size_t>(std::countr_zero(found))) / (8 * sizeof(T));
    // Sparse predicates are common, and one test of four words costs less than four.
    const auto none_in_next_four = [&] {
      const std::uint64_t any =
          elements.word(j + 1) | elements.word(j + 2) | elements.word(j + 3) | elements.word(j + 4);
      return (any & meaningful_bits<T>) == 0;
    };
    while (j + 4 < predicate_words && none_in_next_four()) j += 4;
  }
  return no_element;
}

// The last element that is set.
template <class T, class Elements>
inline std::size_t last_element(Elements elements) {
  for (std::size_t j = predicate_words; j-- != 0;)
    if (const std::uint64_t found = elements.word(j) & meaningful_bits<T>; found != 0)
      return (64 * j + 63 - static_cast<std::size_t>(std::countl_zero(found))) / (8 * sizeof(T));
  return no_element;
}

// Whether an element is set.
template <class T, class Elements>
inline bool any_element(Elements elements) {
  doubles any = elements.group(0);
#pragma GCC unroll 16
  for (std::size_t i = 1; i != lane_count<doubles>; ++i) any |= elements.group(i);
  return ((any[0] | any[1]) & meaningful_bits<T>) != 0;
}

// How many elements are set.
template <class T, class Elements>
inline std::uint64_t count_elements(Elements elements) {
  static_assert(2 * lane_count<doubles> <= 0xFF, "a byte holds how often one place of eight is set");
  using counts = group_of<std::uint8_t>;
  counts by_place{};
#pragma GCC unroll 16
  for (std::size_t i = 0; i != lane_count<doubles>; ++i)
    by_place += counts(elements.group(i) & in_each_lane<doubles>(meaningful_bits<T>));
  // The sum of eight bytes may need nine bits: those of its pairs have sixteen, and a product adds them up.
  const doubles folded = doubles(by_place);
  const std::uint64_t eight = folded[0] + folded[1],
                      pairs = (eight & ~0xFF00FF00FF00FF00) + (eight >> 8 & ~0xFF00FF00FF00FF00);
  return pairs * ones_apiece<std::uint16_t> >> 48;
}

// For each 16 bytes of a predicate a bit, the first the lowest: whether an element is set there, and whether all are.
struct group_bits {
  std::uint32_t some, all;
};

// The lowest `count` bits of T's lanes in both words, all lanes together.
template <class T>
inline group_bits folded(std::uint64_t some, std::uint64_t all, std::size_t count) {
#pragma GCC unroll 3
  for (std::size_t half = 32; half >= 8 * sizeof(T); half /= 2) some |= some >> half, all &= all >> half;
  const std::uint64_t lowest = (std::uint64_t{1} << count) - 1;
  return {static_cast<std::uint32_t>(some & lowest), static_cast<std::uint32_t>(all & lowest)};
}

// Bit k of each lane is that of group k, and the bits from Count on are of no meaning. By halves, so that not all waits
// for all.
template <class T, std::size_t Count>
inline group_of<T> joined_groups(const unsigned char* predicate) {
  if constexpr (Count == 1) {
    return lane<group_of<T>>(predicate, 0);
  } else {
    constexpr std::size_t half = Count / 2;
    return joined_at<half>(joined_groups<T, half>(predicate),
                           joined_groups<T, half>(predicate + half * sizeof(group_of<T>)));
  }
}

template <class T>
inline group_bits set_groups(const unsigned char* predicate) {
  constexpr std::size_t at_once = std::min<std::size_t>(lane_count<doubles>, 8 * sizeof(T));
  group_bits bits{};
#pragma GCC unroll 2
  for (std::size_t from = 0; from != lane_count<doubles>; from += at_once) {
    const auto lanes = doubles(joined_groups<T, at_once>(predicate + from * sizeof(doubles)));
    const group_bits here = folded<T>(lanes[0] | lanes[1], lanes[0] & lanes[1], at_once);
    bits.some |= here.some << from;
    bits.all |= here.all << from;
  }
  return bits;
}

// All elements set, then none: what begins VL_BYTES before its middle, less `count` elements, has the first `count`
// set.
template <class T>
alignas(16) inline constexpr auto set_then_clear = [] {
  std::array<unsigned char, 2 * VL_BYTES> bytes{};
  for (std::size_t i = 0; i != VL_BYTES; i += sizeof(T)) bytes[i] = 1;
  return bytes;
}();

// A predicate with the first `count` elements (0 to lane_count<T>) set, and no others.
template <class T>
inline const unsigned char* first_elements(std::size_t count) {
  return set_then_clear<T>.data() + VL_BYTES - count * sizeof(T);
}

// Sets all elements.
template <class T>
inline void set_all_elements(unsigned char* predicate) {
#ifdef __aarch64__
  if constexpr (has_lane_marks) return fill_predicate<T>(predicate);
#endif
  copy_vector(predicate, first_elements<T>(lane_count<T>));
}

// Sets the first `count` elements and clears the others.
template <class T>
inline void set_first_elements(unsigned char* predicate, std::size_t count) {
  copy_vector(predicate, first_elements<T>(count));
}

}  // namespace quern
