// How the instruction of each thunk is written in assembly: the judge's own table, apart from the decoder's rows.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "sve/decoder/decode_row.h"

namespace quern::test {

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

// A word of a row as the form writes it, with the row's operands as format_operand gives them. Throws
// std::runtime_error when the form wants an operand that the row has not, or the row has one that the form leaves out.
std::string assembly_of(const assembly_form& form, const decode_row& row, std::uint32_t word);

// One spelling for what can be written in several ways: numbers in decimal, register ranges as lists, bit masks in 64
// bits, what may be left out left out (zero offsets, multipliers of one, the pattern "all").
std::string canonical(std::string_view assembly);

}  // namespace quern::test
