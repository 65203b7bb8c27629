// What a memory row accesses.
#include "tests/random_cases/memory_form.h"

#include <algorithm>
#include <string_view>

#include "sve/state/vector_length.h"

namespace quern {
namespace {

bool contains(std::string_view text, std::string_view part) { return text.find(part) != text.npos; }

std::int64_t bytes_of(char letter) { return letter == 'b' ? 1 : letter == 'h' ? 2 : letter == 'w' ? 4 : 8; }

memory_form whole_register(std::string_view name) {
  const std::int64_t bytes = name.ends_with("_zri") ? VL_BYTES : VL_BYTES / 8;
  return {.store = name.starts_with("sve_str"), .scale = bytes, .span = bytes};
}

// The scale and span of a contiguous access of n registers, or of one element for all lanes.
void set_contiguous(memory_form& f, bool broadcast, std::int64_t n, std::int64_t memory_bytes) {
  const std::int64_t vector = VL_BYTES / f.lane_bytes * n * memory_bytes;
  f.span = broadcast ? memory_bytes : vector;
  f.scale = broadcast || f.form == address_form::base_register ? memory_bytes : vector;
}

void set_vector(memory_form& f, std::string_view name, std::int64_t memory_bytes) {
  f.span = memory_bytes;
  f.scale = f.form == address_form::vector_base || contains(name, "_scaled_") ? memory_bytes : 1;
  if (contains(name, "_sxtw_")) f.width = offset_width::low_word_signed;
  if (contains(name, "_uxtw_")) f.width = offset_width::low_word_unsigned;
}

}  // namespace

std::optional<memory_form> memory_form_of(const decode_row& row) {
  const std::string_view name = row.handler;
  if (!name.starts_with("sve_ld") && !name.starts_with("sve_st")) return {};
  if (name.starts_with("sve_ldr_") || name.starts_with("sve_str_")) return whole_register(name);

  // sve_ld1b_zpri, sve_ldnf1sw_d_zpri, sve_ld1rsb_h_zpri, sve_st4d_scaled_zprr: count, replication, sign, element.
  std::size_t at = name.find_first_of("1234");
  const std::int64_t n = name[at++] - '0';
  const bool broadcast = name[at] == 'r';
  at += broadcast ? 1 : 0;
  at += name[at] == 's' ? 1 : 0;
  const std::int64_t memory_bytes = bytes_of(name[at]);

  memory_form f{.store = name.starts_with("sve_st"), .first_fault = contains(name, "ldff")};
  f.lane_bytes = std::int64_t{1} << row.size;
  f.form = name.ends_with("_zpri")   ? address_form::base_immediate
           : name.ends_with("_zprr") ? address_form::base_register
           : name.ends_with("_zpzi") ? address_form::vector_base
                                     : address_form::base_vector;
  if (f.form == address_form::base_immediate || f.form == address_form::base_register) {
    set_contiguous(f, broadcast, n, memory_bytes);
  } else {
    set_vector(f, name, memory_bytes);
  }
  return f;
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
