// Shifts of significands: to the top of a word, and to the right without forgetting that something was lost.
#pragma once

#include <bit>
#include <cstdint>

#include "sve/arith/float/format.h"

namespace quern {

// The zeros above the highest set bit.
template <class Word>
constexpr int leading_zeros(Word word) {
  if constexpr (sizeof(Word) == 16) {
    const auto high = static_cast<std::uint64_t>(word >> 64);
    return high != 0 ? std::countl_zero(high) : 64 + std::countl_zero(static_cast<std::uint64_t>(word));
  } else {
    return std::countl_zero(word);
  }
}

// `word` shifted right by `distance`, 0 or more, with bit 0 set if anything but zeros was shifted out ("sticky").
template <class Word>
constexpr Word shift_right_sticky(Word word, int distance) {
  if (distance >= bits_of<Word>) return word != 0;
  const Word kept = word >> distance;
  return kept | static_cast<Word>(kept << distance != word);
}

}  // namespace quern
