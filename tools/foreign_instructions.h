// Vector instructions that are not emulated, so that they can be called by their names: SVE2, SME, and the extensions
// of either and of SVE for BFloat16 and matrix multiplication.
#pragma once

#include <cstdint>
#include <span>

namespace quern {

struct foreign_instruction {
  const char* extension;  // "SVE2", "I8MM"
  const char* mnemonic;
  std::uint32_t mask, value;  // a word is of this form if its bits under the mask are the value's

  constexpr bool has(std::uint32_t word) const { return (word & mask) == value; }
};

std::span<const foreign_instruction> foreign_instructions();

// The form of a word that the decoder does not know; null if no extension known here has it.
const foreign_instruction* find_foreign(std::uint32_t word);

}  // namespace quern
