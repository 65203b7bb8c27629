// Words of a row's pattern that the architecture leaves without a meaning: random cases leave them out, and a processor
// refuses them.
#pragma once

#include <cstdint>
#include <span>

#include "sve/decoder/decode_row.h"

namespace quern {

struct reserved_words {
  const char* name;  // for a test's name
  bool (*matches)(const decode_row& row, std::uint32_t word);
};

std::span<const reserved_words> all_reserved_words();
bool is_reserved(const decode_row& row, std::uint32_t word);

}  // namespace quern
