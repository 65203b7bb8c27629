// The one function that rewritten code calls.
#pragma once

#include "sve/state/cpu_state.h"

// Carries out an instruction on the calling thread's register file, into which the caller has put all registers but
// X26, X27 and X28: those come from, and go back to, the framework's spill slots. A handler's failure is reported on
// standard error and otherwise treated as success. `pc` is the instruction's address in the application.
void emulate_instruction(unsigned int word, unsigned char* pc, sve_handler handler);
