// Words that the architecture leaves without a meaning.
#include "tests/random_cases/reserved_words.h"

#include <algorithm>
#include <array>

#include "tests/random_cases/memory_form.h"

namespace quern {
namespace {

// Two such words of ADD are the marks by which a program starts and stops the trace.
bool is_shifted_byte(const decode_row& row, std::uint32_t word) {
  if (row.size != size_b) return false;
  return std::any_of(row.operands.begin(), row.operands.end(), [&](const operand& op) {
    const bool shifted = op.kind == operand_kind::imm_shifted || op.kind == operand_kind::imm_shifted_narrow ||
                         op.kind == operand_kind::imm_shifted_s;
    return shifted && (extract(op.mask, word) & 0x100) != 0;
  });
}

// A bit-mask immediate of no length, of length 1, or of nothing but ones.
bool is_empty_mask(const decode_row& row, std::uint32_t word) {
  const operand* const op = find_operand(row, operand_kind::imm_logical);
  if (op == nullptr) return false;
  const std::uint32_t field = extract(op->mask, word), n = field >> 12, imms = field & 0x3F;
  const std::uint32_t joined = n << 6 | (~imms & 0x3F);
  if (joined < 2) return true;
  const std::uint32_t levels = std::bit_floor(joined) - 1;
  return (imms & levels) == levels;
}

// Of loads, stores and prefetches only first-fault loads can do without an offset register.
bool is_offset_31(const decode_row& row, std::uint32_t word) {
  const operand* const offset = find_operand(row, operand_kind::r);
  if (!has_memory_encoding(row.value) || offset == nullptr) return false;
  return row.memory.kind != memory_kind::first_fault_load && extract(offset->mask, word) == 31;
}

constexpr std::array table{
    reserved_words{"ShiftedImmediateOfBytes", is_shifted_byte},
    reserved_words{"BitMaskWithoutLength", is_empty_mask},
    reserved_words{"OffsetRegister31", is_offset_31},
};

}  // namespace

std::span<const reserved_words> all_reserved_words() { return table; }

bool is_reserved(const decode_row& row, std::uint32_t word) {
  return std::any_of(table.begin(), table.end(), [&](const reserved_words& r) { return r.matches(row, word); });
}

}  // namespace quern
