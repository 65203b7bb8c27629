// One emulated instruction, from a signal frame and back to it.
#pragma once

#include <ucontext.h>

#include "sve/trap/patch/run_code.h"

namespace quern {

// The calling thread's register file. Zero at thread start.
cpu_state& thread_state();

// The same with what generated code has beside it.
thread_registers& own_registers();

// Runs the instruction at the frame's PC and moves the frame on behind it, or to generated code that does the same.
// False, with the frame untouched, when that word is not an emulated one. Trap signals that are sent meanwhile are to
// wait, and come when the frame is left.
bool emulate(ucontext_t& frame);

// The frame of the instruction that this thread is emulating just now; null when a signal found the application's own
// code.
ucontext_t* emulated_frame();

// Gives up the instruction under emulation, which will run again: its frame is as it was before, and a signal handler
// has taken it over.
void abandon_emulation();

}  // namespace quern
