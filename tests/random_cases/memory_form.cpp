// What a memory row accesses.
#include "tests/random_cases/memory_form.h"

#include <algorithm>

#include "sve/state/vector_length.h"

namespace quern {
namespace {

constexpr bool is_offset_vector(const operand& op) {
  return op.kind == operand_kind::z || op.kind == operand_kind::z_sxtw || op.kind == operand_kind::z_uxtw;
}

address_form form_of(const decode_row& row) {
  if (find_operand(row, operand_kind::rsp) == nullptr) return address_form::vector_base;
  if (find_operand(row, operand_kind::r) != nullptr) return address_form::base_register;
  return std::ranges::any_of(row.operands, is_offset_vector) ? address_form::base_vector : address_form::base_immediate;
}

// Bytes from the first to the last that an access can touch.
std::int64_t span_of(const decode_row& row) {
  const std::int64_t element = row.memory.element_bytes, lanes = VL_BYTES >> row.size;
  switch (row.memory.extent) {
    case memory_extent::consecutive: return lanes * row.memory.registers * element;
    case memory_extent::quadword: return 16;
    case memory_extent::image: return row.operands[0].traits().file == register_file::vector ? VL_BYTES : VL_BYTES / 8;
    case memory_extent::one_element:
    case memory_extent::scattered: break;
  }
  return element;
}

offset_width width_of(const decode_row& row) {
  if (find_operand(row, operand_kind::z_sxtw) != nullptr) return offset_width::low_word_signed;
  if (find_operand(row, operand_kind::z_uxtw) != nullptr) return offset_width::low_word_unsigned;
  return offset_width::whole;
}

// Bytes a unit of the offset: an immediate counts whole accesses, or elements where the base is a vector.
std::int64_t scale_of(const decode_row& row, address_form form) {
  if (form == address_form::base_immediate) return span_of(row);
  if (form == address_form::base_vector) return std::ranges::find_if(row.operands, is_offset_vector)->multiple;
  return row.memory.element_bytes;
}

}  // namespace

std::optional<memory_form> memory_form_of(const decode_row& row) {
  if (!row.memory.touches_memory()) return {};
  const address_form form = form_of(row);
  return memory_form{.form = form,
                     .width = width_of(row),
                     .store = row.memory.kind == memory_kind::store,
                     .first_fault = row.memory.kind == memory_kind::first_fault_load,
                     .scale = scale_of(row, form),
                     .span = span_of(row),
                     .lane_bytes = std::int64_t{1} << row.size};
}

const operand* find_operand(const decode_row& row, operand_kind kind) {
  const auto op = std::ranges::find(row.operands, kind, &operand::kind);
  return op == row.operands.end() ? nullptr : &*op;
}

const operand& memory_predicate(const decode_row& row) {
  const operand* const zeroing = find_operand(row, operand_kind::pg_zeroing);
  return zeroing != nullptr ? *zeroing : *find_operand(row, operand_kind::pg);
}

}  // namespace quern
