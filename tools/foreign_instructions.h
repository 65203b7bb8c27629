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

// Whether the architecture gives the word to SVE or SME, defined or not.
constexpr bool is_vector_word(std::uint32_t word) {
  const std::uint32_t group = word >> 25 & 0b1111;
  const bool is_sve = group == 0b0010, is_sme = group == 0b0000 && word >> 31 == 1;
  return is_sve || is_sme || (word & 0xFFFFF81F) == 0xD503401F;  // SMSTART and SMSTOP are writes of a system register
}

}  // namespace quern
