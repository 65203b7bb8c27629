// Parts of an instruction form as text.
#include "tools/instruction_form.h"

#include <algorithm>

namespace quern {
namespace {

// The letter of the operand that has this bit of the word.
char letter_of(const decode_row& row, std::uint32_t bit) {
  const auto has_bit = [&](const operand& op) { return (op.mask & bit) != 0; };
  const auto found = std::find_if(row.operands.begin(), row.operands.end(), has_bit);
  return found == row.operands.end() ? '-' : found->letter;
}

}  // namespace

std::string_view route_name(const decode_row& row) {
  switch (row.way) {
    case route::direct:
    case route::direct_fp: return "direct";
    case route::library: return "library";
    case route::none: break;
  }
  return "none";
}

bool moves_fpsr(const decode_row& row) { return row.way == route::direct_fp; }

std::string_view handler_name(const decode_row& row) {
  return row.way == route::library ? row.name.view() : row.handler;
}

std::string pattern_of(const decode_map& map, const decode_row& row) {
  std::string text;
  char before = '\0';  // what the run of equal things consists of: 'F' for fixed bits
  for (std::uint32_t bit = 1u << 31; bit != 0; bit >>= 1) {
    const bool fixed = (map.key.mask() & bit) != 0;
    const char run = fixed ? 'F' : letter_of(row, bit);
    if (run != before && before != '\0') text += ' ';
    before = run;
    text += !fixed ? run : (row.value & bit) != 0 ? '1' : '0';
  }
  return text;
}

std::string operand_form(const operand& op, const decode_row& row) {
  const operand_traits traits = op.traits();
  std::string text = op.name;
  if (traits.shows_size) (text += '.') += "bhsdq"[op.size_in(row.size)];
  return text + traits.suffix;
}

std::string operand_forms(const decode_row& row) {
  std::string text;
  for (const operand& op : row.operands) text += (text.empty() ? "" : ", ") + operand_form(op, row);
  return text;
}

}  // namespace quern
