// The kinds of operands, and all that follows from an operand's kind: one line a kind.
#pragma once

#include <cstdint>
#include <string>

#include "sve/state/operands.h"

namespace quern {

// What an operand is. Of the registers, those "read and written" are a destructive form's source and destination in
// one; the others are written when they are a row's first operand, and read otherwise.
enum class operand_kind : std::uint8_t {
  nothing,             // in the place of a result: none
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
  imm_multiplier,      // a multiplier, encoded less 1: a handler takes it whole, the library adds the 1 itself
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

// Where an operand's value lives.
enum class register_file : std::uint8_t {
  none,        // in the word: an immediate
  vector,      // Z
  element,     // Z, of which element 0 counts
  predicate,   // P
  general,     // X or W, the zero register at number 31
  general_sp,  // X or W, the stack pointer at number 31
};

struct operand;
// Writes an operand of element size `size` as the assembler's language does.
using operand_writer = std::string(const operand& op, std::uint32_t size, std::uint32_t word);

namespace operand_text {
operand_writer nothing;
operand_writer vector, bare_vector, vector_list, sxtw_vector, uxtw_vector, element;
operand_writer merging, zeroing, bare_predicate, predicate;
operand_writer general, general_sp;
operand_writer plain, signed_number, vector_multiple, multiplier, shifted, shifted_signed, right_shift;
operand_writer pattern, rotation, half_turn, index, logical, fp, half_one, half_two, zero_one, prefetch;
}  // namespace operand_text

struct operand_traits {
  operand_kind kind;
  register_file file;
  bool both;           // read and written
  std::uint8_t code;   // the size code of its record, or sized_by_row
  bool shows_size;     // in a list of forms: "Zd.s"
  const char* suffix;  // in a list of forms, after the size: "Pg/m"
  operand_writer* text;

  static constexpr std::uint8_t sized_by_row = 0xFF;  // the operand's own size where it has one
};

namespace operand_lines {
using enum operand_kind;
using file = register_file;
namespace text = operand_text;
inline constexpr std::uint8_t sized = operand_traits::sized_by_row;
// At this scope, since a function would have a copy of it on its stack.
inline constexpr operand_traits table[] = {
    {nothing, file::none, false, sized, false, "", text::nothing},
    {z, file::vector, false, sized, true, "", text::vector},
    {z_both, file::vector, true, sized, true, "", text::vector},
    {z_whole, file::vector, false, sized, false, "", text::bare_vector},
    {z_list, file::vector, false, sized, true, "", text::vector_list},
    {z_sxtw, file::vector, false, size_s, true, ":sxtw", text::sxtw_vector},
    {z_uxtw, file::vector, false, size_s, true, ":uxtw", text::uxtw_vector},
    {v, file::element, false, sized, false, "", text::element},
    {v_both, file::element, true, sized, false, "", text::element},
    {pg_merging, file::predicate, false, p_merging, false, "/m", text::merging},
    {pg_zeroing, file::predicate, false, p_zeroing, false, "/z", text::zeroing},
    {pg, file::predicate, false, p_unqualified, false, "", text::bare_predicate},
    {p, file::predicate, false, sized, true, "", text::predicate},
    {p_both, file::predicate, true, sized, true, "", text::predicate},
    {p_whole, file::predicate, false, sized, false, "", text::bare_predicate},
    {r, file::general, false, sized, false, "", text::general},
    {r_both, file::general, true, sized, false, "", text::general},
    {rsp, file::general_sp, false, sized, false, "", text::general_sp},
    {imm_unsigned, file::none, false, sized, false, "", text::plain},
    {imm_signed, file::none, false, sized, false, "", text::signed_number},
    {imm_vl, file::none, false, sized, false, "", text::vector_multiple},
    {imm_multiplier, file::none, false, sized, false, "", text::multiplier},
    {imm_shifted, file::none, false, sized, false, "", text::shifted},
    {imm_shifted_narrow, file::none, false, sized, false, "", text::shifted},
    {imm_shifted_s, file::none, false, sized, false, "", text::shifted_signed},
    {imm_right_shift, file::none, false, sized, false, "", text::right_shift},
    {imm_pattern, file::none, false, sized, false, "", text::pattern},
    {imm_rotation, file::none, false, sized, false, "", text::rotation},
    {imm_half_turn, file::none, false, sized, false, "", text::half_turn},
    {imm_index, file::none, false, sized, false, "", text::index},
    {imm_logical, file::none, false, sized, false, "", text::logical},
    {imm_fp_dup, file::none, false, sized, false, "", text::fp},
    {imm_fp, file::none, false, sized, false, "", text::fp},
    {imm_fp_half_one, file::none, false, sized, false, "", text::half_one},
    {imm_fp_half_two, file::none, false, sized, false, "", text::half_two},
    {imm_fp_zero_one, file::none, false, sized, false, "", text::zero_one},
    {imm_prefetch, file::none, false, sized, false, "", text::prefetch},
};
constexpr bool in_order = [](const auto& lines) {
  std::uint8_t i = 0;
  for (const operand_traits& line : lines)
    if (line.kind != operand_kind{i++}) return false;
  return operand_kind{i} > imm_prefetch;
}(table);
static_assert(in_order, "the lines stand in the order of the kinds");
}  // namespace operand_lines

constexpr operand_traits traits_of(operand_kind kind) { return operand_lines::table[static_cast<std::uint8_t>(kind)]; }

// A predicate that governs an operation's lanes.
constexpr bool governs(operand_kind kind) {
  return kind == operand_kind::pg_merging || kind == operand_kind::pg_zeroing || kind == operand_kind::pg;
}

}  // namespace quern
