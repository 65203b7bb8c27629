// Emulated words that an ordinary instruction can stand for, as the vector length is fixed: sums of a general register
// and a number of elements, and such a number alone.
#pragma once

#include <cstdint>

namespace quern {

struct decode_row;

// The instruction that does what `word` of that row does: ADD or SUB (immediate) of 64 bits, MOVZ or MOVN. 0, if there
// is none: for any other word, numbers that no such instruction has, and results that nobody gets. For one thread at a
// time; safe in a signal handler.
std::uint32_t ordinary_instruction(std::uint32_t word, const decode_row& row);

}  // namespace quern
