// The operands of instruction forms: which bits of the word they stand in, what they are to a direct handler, and how
// they are written for people. Rows name them; thunks bind them; tools print them.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "sve/decoder/encoding.h"
#include "sve/decoder/immediate.h"
#include "sve/decoder/operand_traits.h"
#include "sve/state/operands.h"

namespace quern {

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
  constexpr operand_traits traits() const { return traits_of(kind); }
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

// A register record. By doublewords, as calls pass it: field by field compilers take twice the instructions.
template <class Record>
constexpr Record register_record(std::uint32_t num, std::uint32_t size, std::uint32_t dsize, std::uint32_t ssize) {
  const auto doubleword = [](std::uint32_t low, std::uint32_t high) { return low | std::uint64_t{high} << 32; };
  static_assert(std::endian::native == std::endian::little);
  return std::bit_cast<Record>(std::array{doubleword(num, size), doubleword(dsize, ssize)});
}

// A register operand's value as a direct handler takes it. Scalars in vectors are bare register numbers.
template <operand Op, std::uint32_t RowSize>
constexpr auto bind_register(std::uint32_t word) {
  constexpr operand_traits traits = Op.traits();
  constexpr std::uint32_t size = Op.size_in(RowSize);
  constexpr std::uint32_t code = traits.code == operand_traits::sized_by_row ? size : traits.code;
  const std::uint32_t num = field<Op>(word);
  if constexpr (traits.file == register_file::vector) {
    return traits.both ? register_record<aarch64_z_reg>(num, z_none, code, code)
                       : register_record<aarch64_z_reg>(num, code, z_none, z_none);
  } else if constexpr (traits.file == register_file::predicate) {
    return traits.both ? register_record<aarch64_p_reg>(num, p_none, code, code)
                       : register_record<aarch64_p_reg>(num, code, p_none, p_none);
  } else if constexpr (traits.file == register_file::general) {
    constexpr std::uint32_t whole = std::max(code, size_w);
    return traits.both ? register_record<aarch64_i_reg>(num, i_none, whole, whole)
                       : register_record<aarch64_i_reg>(num, code, i_none, i_none);
  } else if constexpr (traits.file == register_file::general_sp) {
    return aarch64_i_rsp_reg{num, code};
  } else {
    static_assert(traits.file == register_file::element);
    return num;
  }
}

// An immediate's value as a direct handler takes it.
template <operand Op, std::uint32_t RowSize>
constexpr auto bind_immediate(std::uint32_t word) {
  using enum operand_kind;
  constexpr std::uint32_t size = Op.size_in(RowSize);
  if constexpr (Op.kind == imm_signed || Op.kind == imm_vl) {
    return signed_field<Op>(word);
  } else if constexpr (Op.kind == imm_multiplier) {
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
  } else {
    return field<Op>(word);
  }
}

// The operand's value as a direct handler takes it, for a row of element size RowSize.
template <operand Op, std::uint32_t RowSize>
constexpr auto bind(std::uint32_t word) {
  if constexpr (Op.traits().file == register_file::none) {
    return bind_immediate<Op, RowSize>(word);
  } else {
    return bind_register<Op, RowSize>(word);
  }
}

// The operand as the assembler's language writes it, in a row of element size `row_size`: "z3.s", "p0/m", "wsp",
// "z2.d, sxtw #1", "#-4, mul vl", "vl16", "mul #2".
std::string format_operand(const operand& op, std::uint32_t row_size, std::uint32_t word);

}  // namespace quern
