// The kernel's actions for the trap signals.
#pragma once

namespace quern {

// Makes our handler the kernel's action for SIGILL, SIGBUS and SIGSEGV. What the process inherited as ignored, and what
// the application has set already, stays its own action.
void own_trap_signals();

}  // namespace quern
