// Fields of AArch64 instructions, and classes of instructions by the fixed bits of the architecture's tables.
#pragma once

#include <cstdint>

#include "sve/trap/patch/instructions.h"

namespace quern::aarch64 {

// The bits from `high` down to `low`, and the same as a signed number.
constexpr word field(word w, int high, int low) { return w << (31 - high) >> (31 - high + low); }
constexpr std::int64_t signed_field(word w, int high, int low) {
  return static_cast<std::int32_t>(w << (31 - high)) >> (31 - high + low);
}
constexpr bool is_set(word w, int bit) { return w >> bit & 1; }

struct word_class {
  word mask, fixed;
  constexpr bool operator()(word w) const { return (w & mask) == fixed; }
};

namespace is {

inline constexpr word_class place_address{0x1F000000, 0x10000000};  // ADR, ADRP
inline constexpr word_class sum_with_immediate{0x1F800000, 0x11000000};
inline constexpr word_class logical_with_immediate{0x1F800000, 0x12000000};
inline constexpr word_class wide_move{0x1F800000, 0x12800000};  // MOVN, MOVZ, MOVK
inline constexpr word_class bit_field{0x1F800000, 0x13000000};  // SBFM, BFM, UBFM
inline constexpr word_class bit_field_insertion{0x7F800000, 0x33000000};
inline constexpr word_class extraction{0x1F800000, 0x13800000};  // EXTR
inline constexpr word_class with_immediate{0x1C000000, 0x10000000};

inline constexpr word_class logical_of_registers{0x1F000000, 0x0A000000};
inline constexpr word_class sum_of_registers{0x1F000000, 0x0B000000};
inline constexpr word_class sum_of_shifted{0x1F200000, 0x0B000000};
inline constexpr word_class sum_of_extended{0x1FE00000, 0x0B200000};
inline constexpr word_class sum_with_carry{0x1FE00000, 0x1A000000};  // ADC, SBC; and RMIF, SETF
inline constexpr word_class conditional_comparison{0x1FE00000, 0x1A400000};
inline constexpr word_class conditional_selection{0x1FE00000, 0x1A800000};
inline constexpr word_class of_three_registers{0x1F000000, 0x1B000000};  // MADD and its kin

inline constexpr word_class structure_access{0xBE000000, 0x0C000000};
inline constexpr word_class exclusive_access{0x3F000000, 0x08000000};  // and ordered ones, and compare-and-swap
inline constexpr word_class literal_access{0x3B000000, 0x18000000};
inline constexpr word_class pair_access{0x3A000000, 0x28000000};
inline constexpr word_class single_access{0x3A000000, 0x38000000};

inline constexpr word_class jump{0xFC000000, 0x14000000};
inline constexpr word_class call{0xFC000000, 0x94000000};
inline constexpr word_class branch_on_flags{0xFF000010, 0x54000000};
inline constexpr word_class branch_on_zero{0x7E000000, 0x34000000};  // CBZ, CBNZ
inline constexpr word_class branch_on_bit{0x7E000000, 0x36000000};   // TBZ, TBNZ
inline constexpr word_class branch_to_register{0xFE000000, 0xD6000000};

inline constexpr word_class system_write{0xFFF00000, 0xD5100000};  // MSR
inline constexpr word_class system_read{0xFFF00000, 0xD5300000};   // MRS
inline constexpr word_class barrier{0xFFFFF000, 0xD5033000};
inline constexpr word_class hint{0xFFFFF01F, 0xD503201F};

}  // namespace is

inline constexpr word nop = 0xD503201F, ret = 0xD65F03C0;

}  // namespace quern::aarch64
