// Calls that wait with a mask of their own.
#pragma once

#include <cerrno>

#include "sve/trap/host/export.h"
#include "sve/trap/host/thread_signals.h"

namespace quern {

// What is held while a call waits with a mask of its own.
class held_meanwhile {
 public:
  explicit held_meanwhile(signal_set set) : before_(held_signals()), released_(hold_and_release(set)) {}
  ~held_meanwhile() { hold_signals(before_); }
  held_meanwhile(const held_meanwhile&) = delete;
  held_meanwhile& operator=(const held_meanwhile&) = delete;
  bool released() const { return released_; }

 private:
  const signal_set before_;
  const bool released_;
};

// Answers what wait(set for the kernel) does, while the application believes the thread to have `wanted` for its mask;
// at once interrupted, with errno set, if that lets a waiting signal go.
template <typename Wait>
auto wait_with_set(signal_set wanted, Wait wait) -> decltype(wait(wanted)) {
  const held_meanwhile held(wanted);
  if (held.released()) return result_of(EINTR);
  return wait(wanted & ~never_blocked);
}

}  // namespace quern
