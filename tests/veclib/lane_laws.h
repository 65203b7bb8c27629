// Families whose functions work lane by lane, against a law of one lane that is written with wide integers.
#pragma once

#include <cstdint>
#include <string_view>

#include "sve/arith/integer/wide_integer.h"
#include "tests/veclib/library_members.h"

namespace quern {

// What a law sees: one lane of each vector operand, zero-extended; the doubleword of vectors[1] that the lane lies in;
// the first scalar; and the lane's kind.
struct lane_view {
  std::uint64_t a, b, c, wide, scalar;
  int width, is_unsigned;

  // A lane as the number that it is.
  int128 value(std::uint64_t lane) const { return Int(lane, width, is_unsigned); }
};

// The lane of the result; its low bits count.
struct lane_law {
  std::string_view stem;
  std::uint64_t (*lane)(const lane_view& x);
};

// Expects of all functions of the law's stem, on lanes of which many are values at which arithmetic changes its ways
// and on all pairs of bytes, that the result is as the law says: in all lanes for a function without a predicate, else
// in active lanes, with the lanes of the first operand (a) in the others. `scalars` are tried in turn.
void judge_lanes(const lane_law& law, const std::vector<std::uint64_t>& scalars = {0});

// Random operands, of which the same seed makes the same.
library_operands random_operands(int width, std::uint64_t seed);

}  // namespace quern
