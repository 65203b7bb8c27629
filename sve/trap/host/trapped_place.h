// The places of traps, counted for `quern run`.
#pragma once

#include <ucontext.h>

#include "sve/report/place_counts.h"

namespace quern {

// Maps the report that quern run asks for.
void open_trap_report();

// The instruction that a SIGILL tells of.
placed_word place_of(const ucontext_t& frame);

// Counts one that is not emulated. Does not return if the user wants the program to end there.
void refuse(const placed_word& place);

}  // namespace quern
