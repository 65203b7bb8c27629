// Searching and counting the set elements of a predicate, eight bytes at a time, and filling its first elements.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "sve/state/lanes.h"

namespace quern {

// Bit 0 of each element's first byte, in eight predicate bytes: the bits that carry meaning for elements of T's width.
template <class T>
inline constexpr std::uint64_t meaningful_bits =
    std::numeric_limits<std::uint64_t>::max() / std::numeric_limits<std::make_unsigned_t<T>>::max();

// What a search answers when there is no such element.
inline constexpr std::size_t no_element = std::numeric_limits<std::size_t>::max();

// The elements that a search looks at: those set in one predicate, or in two at once.
struct set_in {
  const unsigned char* bytes;

  std::uint64_t word(std::size_t j) const { return lane<std::uint64_t>(bytes, j); }
};
struct set_in_both {
  const unsigned char *a, *b;

  std::uint64_t word(std::size_t j) const { return lane<std::uint64_t>(a, j) & lane<std::uint64_t>(b, j); }
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

// How many elements are set.
template <class T, class Elements>
inline std::uint64_t count_elements(Elements elements) {
  static_assert(predicate_words <= 0xFF, "a byte holds how often one place of the eight bytes is set");
  std::uint64_t by_place = 0;
  for (std::size_t j = 0; j != predicate_words; ++j) by_place += elements.word(j) & meaningful_bits<T>;
  std::uint64_t total = 0;
  for (std::size_t bit = 0; bit != 64; bit += 8 * sizeof(T)) total += by_place >> bit & 0xFF;
  return total;
}

// Sets the first `count` elements (0 to lane_count<T>) and clears the others.
template <class T>
inline void set_first_elements(unsigned char* predicate, std::size_t count) {
  const std::size_t bits = 8 * sizeof(T) * count, whole_words = bits / 64;
  std::memset(predicate, 0, VL_BYTES);
  for (std::size_t j = 0; j != whole_words; ++j) set_lane(predicate, j, meaningful_bits<T>);
  if (bits % 64 != 0) set_lane(predicate, whole_words, meaningful_bits<T> & ((std::uint64_t{1} << bits % 64) - 1));
}

}  // namespace quern
