// Predicate patterns: how many elements PTRUE sets, and by what INCB, DECD and their like count.
#pragma once

#include <cstdint>

#include "sve/state/operands.h"
#include "sve/state/vector_length.h"

namespace quern {

// The number of elements that a pattern (0 to 31) names at an element size (size_b to size_d), in a vector of
// VL_BYTES bytes (DecodePredCount). A fixed number that the vector does not hold is 0, and so is a pattern without a
// meaning.
constexpr std::uint32_t pattern_count(std::uint32_t pattern, std::uint32_t size) {
  constexpr std::uint32_t pow2 = 0, vl8 = 8, vl16 = 9, vl256 = 13, mul4 = 29, mul3 = 30, all = 31;
  const std::uint32_t elements = static_cast<std::uint32_t>(VL_BYTES) >> size;
  if (pattern == pow2 || pattern == all) return elements;  // every vector length of a build is a power of two
  if (pattern == mul4) return elements - elements % 4;
  if (pattern == mul3) return elements - elements % 3;
  if (pattern > vl256) return 0;
  const std::uint32_t wanted = pattern <= vl8 ? pattern : 16u << (pattern - vl16);
  return wanted <= elements ? wanted : 0;
}

}  // namespace quern
