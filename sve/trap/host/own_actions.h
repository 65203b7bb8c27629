// The application's actions, and the kernel's in their place.
#pragma once

#include "sve/trap/signal_actions.h"

namespace quern {

// Sets the application's action, unless `wanted` is null, and tells in `old`, unless that is null, what it was before:
// as sigaction does. Answers 0 or an error number.
int change_action(int signal, const signal_action* wanted, signal_action* old);

// Makes our handler the kernel's action for SIGILL, SIGBUS and SIGSEGV. What the process inherited as ignored, and what
// the application has set already, stays its own action.
void own_trap_signals();

// Makes our handler the kernel's action for the signal by which threads are cancelled, and the C library's, which
// stands there already, the one to be called by it.
void own_cancel_signal();

}  // namespace quern
