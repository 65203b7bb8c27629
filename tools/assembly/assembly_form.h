// How each instruction form is written in assembly. The table is apart from the decoder's rows, so that a disassembler
// which agrees with it has judged those.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "sve/decoder/decode_row.h"

namespace quern {

// The instruction of the thunks of one stem. `tags` tells those of the stem apart: it is a type tag ("U64") or a set of
// first letters of tags ("FD"). `operands` has the operands by name: "<Zd>, <Pg>, <Zn>". <Rdn=x> is the operand's
// register by its 64-bit name.
struct assembly_form {
  std::string_view stem;
  std::string_view tags;
  std::string_view mnemonic;
  std::string_view operands;
};

// The forms by group.
std::span<const assembly_form> integer_forms();
std::span<const assembly_form> floating_point_forms();
std::span<const assembly_form> permute_forms();
std::span<const assembly_form> predicate_forms();
std::span<const assembly_form> contiguous_forms();
std::span<const assembly_form> gather_forms();

// The form of a row, by its name alone. Throws std::runtime_error unless there is exactly one.
const assembly_form& form_of(const decode_row& row);

// How many forms there are, all groups together.
std::size_t form_count();

// A word of a row in assembly, with the row's operands as format_operand gives them. Throws std::runtime_error when the
// form wants an operand that the row has not, or the row has one that the form leaves out.
std::string assembly_of(const decode_row& row, std::uint32_t word);

}  // namespace quern
