// The handler that the kernel runs for every signal that the application handles, and for the trap signals always.
#pragma once

#include <csignal>

namespace quern {

// Carries out the emulated instruction of a SIGILL, lets a guarded read or probe of the emulator recover from its
// fault, and hands all other signals to the application's own action.
extern "C" void quern_on_signal(int signal, siginfo_t* info, void* context);

}  // namespace quern
