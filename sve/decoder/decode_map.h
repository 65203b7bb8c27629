// The decode maps, with their tables, for whoever wants more than the routine of a word: tools, tests, fuzzers.
#pragma once

#include <map>
#include <span>

#include "sve/decoder/decode_row.h"

namespace quern {

// Maps are ordered by their keys as signed numbers.
using handler_map = std::map<int, sve_handler>;

struct decode_map {
  const char* name;  // "decode_map__31_13"
  key_bits key;
  std::span<const decode_row> rows;  // in the order of the thunks' names
  const handler_map* map;            // built from the rows before main
};

// The 44 maps in lookup order, the most specific first.
std::span<const decode_map> decode_maps();

// What a word is: its row and the map that holds it, or nulls.
struct decoded_word {
  const decode_row* row = nullptr;
  const decode_map* map = nullptr;
};
decoded_word decode_word(std::uint32_t word);

}  // namespace quern
