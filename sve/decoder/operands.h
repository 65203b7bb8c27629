// The operands that rows name, each with its bits in the word.
#pragma once

#include "sve/decoder/operand.h"

namespace quern {

// Bits high..low of a word.
consteval std::uint32_t bit_range(int high, int low) { return (~0u >> (31 - high)) & (~0u << low); }

inline constexpr operand Zd{"Zd", 'd', operand_kind::z, bit_range(4, 0)};
inline constexpr operand Zdn{"Zdn", 'd', operand_kind::z_both, bit_range(4, 0)};
inline constexpr operand Zn{"Zn", 'n', operand_kind::z, bit_range(9, 5)};
inline constexpr operand Zm{"Zm", 'm', operand_kind::z, bit_range(20, 16)};
inline constexpr operand Zm9{"Zm", 'm', operand_kind::z, bit_range(9, 5)};

inline constexpr operand Pg_m{"Pg", 'g', operand_kind::pg_merging, bit_range(12, 10)};
inline constexpr operand Pg_z{"Pg", 'g', operand_kind::pg_zeroing, bit_range(12, 10)};
inline constexpr operand Pg{"Pg", 'g', operand_kind::pg, bit_range(12, 10)};

}  // namespace quern
