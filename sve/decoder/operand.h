// The operands of instruction forms: which bits of the word they stand in, what they are to a direct handler, and how
// they are written for people. Rows name them; thunks bind them; tools print them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "sve/decoder/encoding.h"
#include "sve/decoder/immediate.h"
#include "sve/state/operands.h"

namespace quern {

// What an operand is. Of the vectors and predicates, those "read and written" are a destructive form's source and
// destination in one; the others are written when they are a row's first operand, and read otherwise.
enum class operand_kind : std::uint8_t {
  z,                   // vector; as an offset, scaled
  z_both,              // vector, read and written
  z_whole,             // vector whose elements don't matter: it is written without a size
  z_list,              // `multiple` consecutive vectors from the field's number up
  z_sxtw,              // vector of 32-bit offsets, sign-extended, scaled; in lanes of the row's size
  z_uxtw,              // the same, zero-extended
  v,                   // number of a vector whose element 0 is a scalar
  v_both,              // the same, read and written
  pg_merging,          // governing predicate, /m
  pg_zeroing,          // governing predicate, /z
  pg,                  // governing predicate without a qualifier
  p,                   // predicate with elements
  p_both,              // predicate with elements, read and written
  p_whole,             // predicate whose elements don't matter: it is written without a size
  r,                   // general register, 31 is the zero register; as an offset, scaled
  r_both,              // the same, read and written; W for elements that fit in it
  rsp,                 // general register, 31 is the stack pointer
  imm_unsigned,        // the field
  imm_signed,          // the field, sign-extended
  imm_vl,              // the field, sign-extended, in multiples of the vector length
  imm_plus_one,        // the field plus 1: a multiplier
  imm_multiplier,      // the field of a multiplier, for a routine that adds the 1 itself
  imm_shifted,         // eight bits under a "shift left by 8" bit
  imm_shifted_narrow,  // the same, cut to the element's width
  imm_shifted_s,       // the same, the eight bits sign-extended first
  imm_right_shift,     // element bits minus the field
  imm_pattern,         // predicate pattern
  imm_rotation,        // quarter turns
  imm_half_turn,       // a quarter turn, or with the bit set three
  imm_index,           // element index
  imm_logical,         // bit-mask immediate
  imm_fp_dup,          // eight-bit floating-point immediate, in its three formats
  imm_fp,              // the same, in the row's format alone
  imm_fp_half_one,     // one bit: 0.5 or 1.0
  imm_fp_half_two,     // one bit: 0.5 or 2.0
  imm_fp_zero_one,     // one bit: 0.0 or 1.0
  imm_prefetch,        // prefetch operation
};

// An operand is data, usable as a template argument.
struct operand {
  char name[8];  // as the published forms call it
  char letter;   // its field in an encoding's drawing
  operand_kind kind;
  std::uint32_t mask;         // its bits in the word; the upper run is the more significant
  std::int8_t size = -1;      // element or register size code; -1: the row's
  std::uint8_t multiple = 1;  // bytes, vectors or registers that one unit of an offset or a list stands for

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
  // The same operand in units of `units`. Handlers get it unscaled: this is for those who read it.
  consteval operand times(unsigned units) const {
    operand other = *this;
    other.multiple = static_cast<std::uint8_t>(units);
    return other;
  }
  constexpr std::uint32_t size_in(std::uint32_t row_size) const {
    return size < 0 ? row_size : static_cast<std::uint32_t>(size);
  }
};

// The operand's bits in a word, unsigned or sign-extended to 32 bits. The recursion over the runs of the mask, usually
// one, leaves a thunk with constant shifts and masks.
template <std::uint32_t Mask>
constexpr std::uint32_t masked_field(std::uint32_t word) {
  constexpr int low = std::countr_zero(Mask), width = std::countr_one(Mask >> low);
  constexpr std::uint32_t ones = (1u << width) - 1, rest = Mask & ~(ones << low);
  if constexpr (rest == 0) {
    return word >> low & ones;
  } else {
    return masked_field<rest>(word) << width | (word >> low & ones);
  }
}
template <operand Op>
constexpr std::uint32_t field(std::uint32_t word) {
  return masked_field<Op.mask>(word);
}
template <operand Op>
constexpr std::int32_t signed_field(std::uint32_t word) {
  return sign_extend(field<Op>(word), std::popcount(Op.mask));
}

// A register operand's value as a direct handler takes it.
template <operand Op, std::uint32_t RowSize>
constexpr auto bind_register(std::uint32_t word) {
  using enum operand_kind;
  constexpr std::uint32_t size = Op.size_in(RowSize);
  const std::uint32_t num = field<Op>(word);
  if constexpr (Op.kind == z || Op.kind == z_whole || Op.kind == z_list) {
    return aarch64_z_reg{num, size, z_none, z_none};
  } else if constexpr (Op.kind == z_sxtw || Op.kind == z_uxtw) {
    return aarch64_z_reg{num, size_s, z_none, z_none};
  } else if constexpr (Op.kind == z_both) {
    return aarch64_z_reg{num, z_none, size, size};
  } else if constexpr (Op.kind == pg_merging) {
    return aarch64_p_reg{num, p_merging, p_none, p_none};
  } else if constexpr (Op.kind == pg_zeroing) {
    return aarch64_p_reg{num, p_zeroing, p_none, p_none};
  } else if constexpr (Op.kind == pg) {
    return aarch64_p_reg{num, p_unqualified, p_none, p_none};
  } else if constexpr (Op.kind == p || Op.kind == p_whole) {
    return aarch64_p_reg{num, size, p_none, p_none};
  } else if constexpr (Op.kind == p_both) {
    return aarch64_p_reg{num, p_none, size, size};
  } else if constexpr (Op.kind == r) {
    return aarch64_i_reg{num, size, i_none, i_none};
  } else if constexpr (Op.kind == r_both) {
    return aarch64_i_reg{num, i_none, std::max(size, size_w), std::max(size, size_w)};
  } else {
    static_assert(Op.kind == rsp);
    return aarch64_i_rsp_reg{num, size};
  }
}

// The operand's value as a direct handler takes it, for a row of element size RowSize. Scalars in vectors are bare
// register numbers.
template <operand Op, std::uint32_t RowSize>
constexpr auto bind(std::uint32_t word) {
  using enum operand_kind;
  constexpr std::uint32_t size = Op.size_in(RowSize);
  if constexpr (Op.kind == imm_signed || Op.kind == imm_vl) {
    return signed_field<Op>(word);
  } else if constexpr (Op.kind == imm_plus_one) {
    return field<Op>(word) + 1;
  } else if constexpr (Op.kind == imm_shifted) {
    return shifted_immediate(field<Op>(word));
  } else if constexpr (Op.kind == imm_shifted_narrow) {
    return shifted_immediate(field<Op>(word)) & (size == size_b ? 0xFFu : ~0u);
  } else if constexpr (Op.kind == imm_shifted_s) {
    return shifted_signed_immediate(field<Op>(word));
  } else if constexpr (Op.kind == imm_right_shift) {
    return right_shift_amount(field<Op>(word), size);
  } else if constexpr (Op.kind == imm_logical) {
    return decode_bit_mask(field<Op>(word));
  } else if constexpr (Op.kind == imm_fp_dup) {
    return expand_fp_immediate(field<Op>(word));
  } else if constexpr (Op.kind == imm_fp) {
    const aarch64_sve_fp_dup_imm formats = expand_fp_immediate(field<Op>(word));
    if constexpr (size == size_h) return formats.half;
    if constexpr (size == size_s) return formats.single;
    if constexpr (size == size_d) return formats.dbl;
  } else if constexpr (Op.kind == imm_fp_half_one || Op.kind == imm_fp_half_two || Op.kind == imm_fp_zero_one) {
    return aarch64_sve_fp_arith_imm{field<Op>(word)};
  } else if constexpr (Op.kind == v || Op.kind == v_both || Op.kind >= imm_unsigned) {
    return field<Op>(word);
  } else {
    return bind_register<Op, RowSize>(word);
  }
}

// The operand as the assembler's language writes it, in a row of element size `row_size`: "z3.s", "p0/m", "wsp",
// "z2.d, sxtw #1", "#-4, mul vl", "vl16", "mul #2".
std::string format_operand(const operand& op, std::uint32_t row_size, std::uint32_t word);

}  // namespace quern
