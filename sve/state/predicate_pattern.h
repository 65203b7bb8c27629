// Predicate patterns: how many elements PTRUE sets, and by what INCB, DECD and their like count.
#pragma once

#include <bit>
#include <cstdint>

#include "sve/state/vector_length.h"

namespace quern {

// The number of elements that a pattern, the five-bit field of the published encoding, selects of `count`
// (DecodePredCount). Patterns that are not allocated, and fixed counts above `count`, select none. POW2 of no elements
// is 1, and ALL clears the lowest bit of `count`.
constexpr int selected_count(std::uint64_t pattern, int count) {
  constexpr std::uint64_t pow2 = 0, vl8 = 8, vl256 = 13, mul4 = 29, mul3 = 30, all = 31;
  switch (pattern) {
    case pow2: return count < 1 ? 1 : static_cast<int>(std::bit_floor(static_cast<unsigned>(count)));
    case mul4: return count & ~3;
    case mul3: return count / 3 * 3;
    case all: return count & ~1;
    default: break;
  }
  if (pattern > vl256) return 0;
  const int wanted = pattern <= vl8 ? static_cast<int>(pattern) : 1 << (pattern - 5);
  return wanted <= count ? wanted : 0;
}

// The same of all elements of a size (size_b to size_d) in a vector of VL_BYTES bytes.
constexpr std::uint32_t pattern_count(std::uint32_t pattern, std::uint32_t size) {
  return static_cast<std::uint32_t>(selected_count(pattern, static_cast<int>(VL_BYTES) >> size));
}

}  // namespace quern
