// Placeholders: the handlers that exist by name only, since their instructions go to the vector library. Nothing calls
// them. One reports the word in instr_word under its own name on standard error, changes no register, and answers
// DECODE_UNIMPLEMENTED.
#pragma once

#include <span>

#include "sve/state/cpu_state.h"

// After the state come whatever operands the instruction has: a placeholder looks at none.
using placeholder_handler = aarch64_decode_rc(cpu_state* state, ...);

#define PLACEHOLDER(name) placeholder_handler name;
#include "sve/handlers/placeholders.def"
#undef PLACEHOLDER

namespace quern {

struct placeholder {
  const char* name;
  placeholder_handler* handler;
};

// All of them, by name.
std::span<const placeholder> placeholders();

}  // namespace quern
