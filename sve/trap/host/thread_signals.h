// What the application believes of the calling thread's mask. SIGILL is never blocked in the kernel: when the
// application has blocked it, it is held here, and one that is sent meanwhile waits here. Any trap signal that is sent
// during an emulated instruction waits here for the instruction's end.
//
// A held SIGILL that is sent to the whole process waits on the thread that happened to get it, though another thread
// might have taken it; and signalfd and the system calls themselves are not looked after.
#pragma once

#include "sve/trap/signal_set.h"

namespace quern {

// SIGILL, if the application believes it blocked; else nothing.
signal_set held_signals();

// Holds SIGILL if it is in `set`, and no other. What waited and is not held is sent again: it arrives before this
// returns, unless the kernel blocks it. Answers what was held before.
signal_set hold_signals(signal_set set);

// As hold_signals, and tells whether a waiting signal was let go.
bool hold_and_release(signal_set set);

// The trap signals that wait.
signal_set waiting_signals();

// Keeps a trap signal that was sent. As with the kernel's own, a second one before the first is taken is lost.
void keep_waiting(int signal, const siginfo_t& info);

// Takes one waiting signal of `set` out, as sigwaitinfo does; answers its number, or 0 when there is none.
int take_waiting(signal_set set, siginfo_t& info);

// Forgets what waits, in the child of a fork: pending signals are not inherited.
void forget_waiting();

// The whole mask that the application believes the thread to have.
signal_set application_mask();

// Changes that mask as sigprocmask does. Answers 0 or an error number. `set` or `old` may be null.
int change_application_mask(int how, const signal_set* set, signal_set* old);

// For its lifetime the kernel has the application's mask in full: around calls of the C library that hand the mask on
// to a new program. No emulated code may run meanwhile.
class inherited_mask {
 public:
  inherited_mask();
  ~inherited_mask();
  inherited_mask(const inherited_mask&) = delete;
  inherited_mask& operator=(const inherited_mask&) = delete;

 private:
  signal_set held_;
};

}  // namespace quern
