// Random test cases of a decode row: a word of its pattern, a register file, and memory. A case follows from its row
// and seed alone and is the same on every platform.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sve/decoder/decode_map.h"
#include "sve/state/cpu_state.h"
#include "tests/random_cases/arena.h"
#include "tests/random_cases/memory_form.h"

namespace quern {

struct case_row {
  const decode_row* row;
  const decode_map* map;
};

struct test_case {
  std::uint32_t word = 0;
  // No predicate byte, FFR's included, is other than 0 or 1. Where this is false only bit 0 of a byte counts, and what
  // stands in the other bits must not matter.
  bool clean = true;
  bool has_memory = false;
  std::uint64_t access = 0;    // address of a contiguous access's first byte
  bool split_element = false;  // an active lane of a gather or scatter has its element in two pages
  cpu_state state{};
  unsigned char memory[arena_bytes]{};  // what is to stand in the arena, if has_memory
};

// Fills `c` with the case of that seed.
void make_case(const case_row& row, std::uint64_t seed, test_case& c);

// Carries out the word as on a processor whose FPCR is the state's.
aarch64_decode_rc run_thunk(const decode_row& row, std::uint32_t word, cpu_state& state);

// A random word of the row's pattern that the architecture gives a meaning.
class random_source;
std::uint32_t make_word(const case_row& row, random_source& random);

// All rows, in the order of the maps.
std::vector<case_row> all_rows();

// "VecU8AddVVX (sve_add_zzz)  0x04200000  z0.b z0.b z0.b".
std::string describe(const decode_row& row, std::uint32_t word);

}  // namespace quern
