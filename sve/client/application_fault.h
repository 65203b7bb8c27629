// Faults of emulated loads and stores, made the application's own.
#pragma once

#include "sve/client/framework.h"
#include "sve/state/cpu_state.h"

namespace quern {

// Runs the handler on the word at state.pc. When it faults in application memory, the application gets the signal as it
// would of a processor with SVE: with the PC of that instruction and the registers before it; this does not return
// then. To be called by rewritten code's call-out only.
aarch64_decode_rc run_handler(void* drcontext, sve_handler handler, cpu_state* state, unsigned int word);

// The signal event: puts the context of a signal that met the application in the code that repeats an access right, and
// reports what quern run tells of.
dr_signal_action_t event_signal(void* drcontext, dr_siginfo_t* info);

}  // namespace quern
