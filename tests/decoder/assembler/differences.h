// Words on which the decoder and the assembler are known to differ, each with its reason.
#pragma once

#include <span>

#include "sve/decoder/encoding.h"

namespace quern::test {

struct difference {
  encoding words;
  const char* reason;
};

// Words that a row claims though the architecture has no such instruction in base SVE. There are none the other way
// round: every instruction of base SVE is emulated.
std::span<const difference> claimed_beyond_the_architecture();

// Those of them that the assembler takes, or took in some version, for an instruction of base SVE.
std::span<const difference> taken_by_a_lax_assembler();

// Whether a word is one of a table's.
bool is_in(std::span<const difference> table, std::uint32_t word);

}  // namespace quern::test
