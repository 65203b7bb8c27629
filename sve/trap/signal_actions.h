// The signal actions that the application has asked for, beside those that the kernel is given in their place.
#pragma once

#include "sve/trap/signal_set.h"

namespace quern {

// What is done on a signal: what of a struct sigaction has meaning on AArch64.
struct signal_action {
  void* handler;  // SIG_DFL, SIG_IGN, or a function, as an address
  int flags;
  signal_set mask;
};

inline bool is_default(const signal_action& action) { return action.handler == reinterpret_cast<void*>(SIG_DFL); }
inline bool is_ignore(const signal_action& action) { return action.handler == reinterpret_cast<void*>(SIG_IGN); }
inline bool has_handler(const signal_action& action) { return !is_default(action) && !is_ignore(action); }

// The action to install in the kernel where the application asks for `wanted` and our own handler is `dispatcher`:
// - a trap signal always comes to us;
// - SIGILL holds all other signals off, so that they arrive between emulated instructions, but those by which a fault
//   within one comes;
// - any other handler is run through ours, and no action's mask has SIGILL in it.
signal_action kernel_action(int signal, const signal_action& wanted, void* dispatcher);

// The action that the application asked for last, as sigaction tells it.
signal_action application_action(int signal);

// Notes what the application asks for. One thread at a time; readers may see two actions mixed for a
// moment, as a signal that arrives just then might see either.
void set_application_action(int signal, const signal_action& action);

}  // namespace quern
