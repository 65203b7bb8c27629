// What a memory row accesses: the form of its address, by its row's constants and its operands.
#pragma once

#include <cstdint>
#include <optional>

#include "sve/decoder/decode_row.h"

namespace quern {

enum class address_form : std::uint8_t {
  base_immediate,  // scalar base, immediate offset
  base_register,   // scalar base, scalar offset
  base_vector,     // scalar base, vector of offsets
  vector_base,     // vector of addresses, immediate offset
};

enum class offset_width : std::uint8_t { whole, low_word_signed, low_word_unsigned };

struct memory_form {
  address_form form = address_form::base_immediate;
  offset_width width = offset_width::whole;  // of each lane of a vector of offsets
  bool store = false;
  bool first_fault = false;
  std::int64_t scale = 1;  // bytes a unit of the offset
  std::int64_t span = 0;   // bytes from the first to the last that one access, or a whole contiguous one, can touch
  std::int64_t lane_bytes = 1;  // of a vector register's lane
};

// The form of a row's accesses, or nothing when the row touches no memory.
std::optional<memory_form> memory_form_of(const decode_row& row);

// The row's first operand of that kind, or null.
const operand* find_operand(const decode_row& row, operand_kind kind);

// The governing predicate of a memory row that has one.
const operand& memory_predicate(const decode_row& row);

}  // namespace quern
