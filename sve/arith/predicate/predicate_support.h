// Helpers of the vector library for predicates.
#pragma once

#include <cstdint>

// The number of elements that a predicate-constraint pattern selects of `count` (DecodePredCount): the five-bit field
// of the published encoding. Patterns that are not allocated, and fixed counts above `count`, select none. POW2 of no
// elements is 1, and ALL clears the lowest bit of `count`.
int VecTrueILength(std::uint64_t pattern, int count);
