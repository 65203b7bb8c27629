// Differences between two register files, and between two memories.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sve/state/cpu_state.h"

namespace quern {

// What a difference's text calls the two.
struct side_names {
  const char *first, *second;
};

enum class part : std::uint8_t { x, sp, nzcv, fpsr, z, p, ffr, memory, other };

struct difference {
  part where;
  std::string text;  // "z3.s[5]: processor 0x00000001, emulator 0x00000002", by the names of the two sides
};

// The first difference of each part, with vectors shown in lanes of `size`. Of predicate bytes only bit 0 is compared.
// Of the fields that no processor has, pc and fpcr must be equal.
std::vector<difference> compare_states(const cpu_state& a, const cpu_state& b, std::uint32_t size, side_names sides);

// The first difference of two memories of `bytes` bytes, if any, is added to `found`.
void compare_memory(const unsigned char* a, const unsigned char* b, std::int64_t bytes, side_names sides,
                    std::vector<difference>& found);

// The first predicate byte that is neither 0 nor 1, if any, is added to `found`.
void check_predicate_bytes(const cpu_state& state, std::vector<difference>& found);

}  // namespace quern
