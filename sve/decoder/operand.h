// The operands of instruction forms: which bits of the word they stand in, what they are to a direct handler, and how
// they are written for people. Rows name them; thunks bind them; tools print them.
#pragma once

#include <cstdint>
#include <string>

#include "sve/decoder/encoding.h"
#include "sve/decoder/immediate.h"
#include "sve/state/operands.h"

namespace quern {

enum class operand_kind : std::uint8_t {
  z,                // vector, only read or only written
  z_both,           // vector, read and written
  v,                // number of a vector whose element 0 is a scalar
  pg_merging,       // governing predicate, /m
  pg_zeroing,       // governing predicate, /z
  pg,               // governing predicate without a qualifier
  p,                // predicate with elements
  p_both,           // predicate with elements, read and written
  r,                // general register, 31 is the zero register
  r_both,           // the same, read and written
  rsp,              // general register, 31 is the stack pointer
  imm_unsigned,     // the field
  imm_signed,       // the field, sign-extended
  imm_plus_one,     // the field plus 1: a multiplier
  imm_shifted,      // eight bits under a "shift left by 8" bit
  imm_shifted_s,    // the same, the eight bits sign-extended first
  imm_right_shift,  // element bits minus the field
  imm_pattern,      // predicate pattern
  imm_rotation,     // quarter turns
  imm_half_turn,    // a quarter turn, or with the bit set three
  imm_vl,           // the field, sign-extended, in multiples of the vector length
  imm_index,        // element index
  imm_logical,      // bit-mask immediate
  imm_fp_dup,       // eight-bit floating-point immediate
  imm_fp_arith,     // one bit that picks one of two floating-point constants
  imm_prefetch,     // prefetch operation
};

// An operand is data, usable as a template argument.
struct operand {
  char name[8];  // as the published forms call it
  char letter;   // its field in an encoding's drawing
  operand_kind kind;
  std::uint32_t mask;     // its bits in the word; the upper run is the more significant
  std::int8_t size = -1;  // element or register size code; -1: the row's

  // The same operand with a size of its own.
  consteval operand of(std::uint32_t code) const {
    operand other = *this;
    other.size = static_cast<std::int8_t>(code);
    return other;
  }
  // The same operand as another kind.
  consteval operand as(operand_kind other_kind) const {
    operand other = *this;
    other.kind = other_kind;
    return other;
  }
  constexpr std::uint32_t size_in(std::uint32_t row_size) const {
    return size < 0 ? row_size : static_cast<std::uint32_t>(size);
  }
};

// The operand's bits in a word, unsigned or sign-extended to 32 bits.
template <operand Op>
constexpr std::uint32_t field(std::uint32_t word) {
  return extract(Op.mask, word);
}
template <operand Op>
constexpr std::int32_t signed_field(std::uint32_t word) {
  return sign_extend(field<Op>(word), std::popcount(Op.mask));
}

// The operand's value as a direct handler takes it, for a row of element size RowSize.
template <operand Op, std::uint32_t RowSize>
constexpr auto bind(std::uint32_t word) {
  using enum operand_kind;
  constexpr std::uint32_t size = Op.size_in(RowSize);
  if constexpr (Op.kind == z) {
    return aarch64_z_reg{field<Op>(word), size, z_none, z_none};
  } else if constexpr (Op.kind == z_both) {
    return aarch64_z_reg{field<Op>(word), z_none, size, size};
  } else if constexpr (Op.kind == pg_merging) {
    return aarch64_p_reg{field<Op>(word), p_merging, p_none, p_none};
  } else if constexpr (Op.kind == pg_zeroing) {
    return aarch64_p_reg{field<Op>(word), p_zeroing, p_none, p_none};
  } else if constexpr (Op.kind == pg) {
    return aarch64_p_reg{field<Op>(word), p_unqualified, p_none, p_none};
  } else if constexpr (Op.kind == p) {
    return aarch64_p_reg{field<Op>(word), size, p_none, p_none};
  } else if constexpr (Op.kind == p_both) {
    return aarch64_p_reg{field<Op>(word), p_none, size, size};
  } else if constexpr (Op.kind == r) {
    return aarch64_i_reg{field<Op>(word), size, i_none, i_none};
  } else if constexpr (Op.kind == r_both) {
    return aarch64_i_reg{field<Op>(word), i_none, size, size};
  } else if constexpr (Op.kind == rsp) {
    return aarch64_i_rsp_reg{field<Op>(word), size};
  } else if constexpr (Op.kind == imm_signed || Op.kind == imm_vl) {
    return signed_field<Op>(word);
  } else if constexpr (Op.kind == imm_plus_one) {
    return field<Op>(word) + 1;
  } else if constexpr (Op.kind == imm_shifted) {
    return shifted_immediate(field<Op>(word));
  } else if constexpr (Op.kind == imm_shifted_s) {
    return shifted_signed_immediate(field<Op>(word));
  } else if constexpr (Op.kind == imm_right_shift) {
    return right_shift_amount(field<Op>(word), size);
  } else if constexpr (Op.kind == imm_logical) {
    return decode_bit_mask(field<Op>(word));
  } else if constexpr (Op.kind == imm_fp_dup) {
    return expand_fp_immediate(field<Op>(word));
  } else if constexpr (Op.kind == imm_fp_arith) {
    return aarch64_sve_fp_arith_imm{field<Op>(word)};
  } else {
    return field<Op>(word);
  }
}

// The operand as assembly in a row of element size `row_size`: "z3.s", "p0/m", "wsp", "#-4, mul vl", "vl16".
std::string format_operand(const operand& op, std::uint32_t row_size, std::uint32_t word);

}  // namespace quern
