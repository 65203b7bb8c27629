// The operands that routines are judged on.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/arith/float/judge/routine.h"
#include "tests/random_cases/random_source.h"

namespace quern::judge {

// The width of a kind of operand, in bits.
constexpr int bits_of_kind(operand_kind kind) { return 16 << static_cast<int>(kind) % 3; }

// A format's zeros, subnormals, smallest and largest normals, powers of two and their neighbours, infinities, NaNs of
// both sorts with payloads, and values with significands about half as long as the format's; or such values of an
// integer. At least 200.
const std::vector<std::uint64_t>& corner_values(operand_kind kind);

// Some 50 of them, for crosses of three.
const std::vector<std::uint64_t>& few_corner_values(operand_kind kind);

// For a routine of one operand: all 65,536 halves, or the corner values, and about every value of a narrower format or
// integer that could be rounded to: it, halfway to the next, and the neighbours of these.
const std::vector<std::uint64_t>& dense_values(operand_kind kind);

// Operands at random: of all patterns, near corners, or of exponents and signs such that they cancel or meet.
operands random_operands(const routine& r, random_source& random);

}  // namespace quern::judge
