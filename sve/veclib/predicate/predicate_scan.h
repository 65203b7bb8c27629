// Searching packed predicates from the bottom up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "sve/state/cpu_context.h"
#include "sve/veclib/predicate_lanes.h"

namespace quern::veclib {

enum class upper_bound { excluded, included };

// The bits below the first that is set in `ends`, and that one too where it is included; all when none is set.
template <upper_bound Bound>
inline PredV bits_to_first(const PredV& ends) {
  PredV result;
  std::uint64_t not_ended = ~std::uint64_t{0};
  for (std::size_t w = 0; w != std::size(ends.words); ++w) {
    const std::uint64_t word = ends.words[w], below = ~word & (word - 1);
    result.words[w] = not_ended & (Bound == upper_bound::included ? below | (word & -word) : below);
    if (word != 0) not_ended = 0;
  }
  return result;
}

// The lowest bit that is set, alone.
inline PredV first_bit(const PredV& predicate) { return predicate & bits_to_first<upper_bound::included>(predicate); }

}  // namespace quern::veclib
