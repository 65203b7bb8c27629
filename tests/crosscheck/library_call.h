// Calls of the vector library's functions for rows that go to a direct handler: as a library row's thunk would do it.
#pragma once

#include "sve/decoder/decode_row.h"
#include "tests/veclib/library_members.h"

namespace quern {

// Calls the function with the operands that the row names in the word, and delivers its result. A row names operands in
// its handler's order; the function takes each kind in that order too, but for a few that take the first one last.
void call_library(const decode_row& row, const library_member& function, std::uint32_t word, cpu_state& state);

}  // namespace quern
