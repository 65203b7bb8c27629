// The words that the architecture gives to instructions on vectors.
#pragma once

#include <cstdint>

namespace quern {

// Whether a word belongs to SVE or SME, defined or not, emulated or not.
constexpr bool is_vector_word(std::uint32_t word) {
  const std::uint32_t group = word >> 25 & 0b1111;
  const bool is_sve = group == 0b0010, is_sme = group == 0b0000 && word >> 31 == 1;
  return is_sve || is_sme || (word & 0xFFFFF81F) == 0xD503401F;  // SMSTART and SMSTOP are writes of a system register
}

}  // namespace quern
