// The nest of application signal handlers that a thread runs in. Each level keeps the scalable registers of the code
// that it interrupted, from the first emulated instruction in the handler on.
#pragma once

#include "sve/state/cpu_state.h"
#include "sve/state/saved_vectors.h"

namespace quern {

// Lives in the frame of the function that calls the application's handler; its end, also by an exception or a thread's
// cancellation, brings the kept registers back.
class handler_level {
 public:
  explicit handler_level(cpu_state& state);
  ~handler_level();
  handler_level(const handler_level&) = delete;
  handler_level& operator=(const handler_level&) = delete;

  // The innermost level of the calling thread, null outside all handlers.
  static handler_level* innermost();

  // Keeps the registers, unless that is done. To be called before an emulated instruction of this level.
  void keep_vectors();

  // Leaves all levels within `target` without bringing registers back, as a long jump does. Does nothing unless
  // `target` is null or a level that the thread is in.
  static void jump_out_to(handler_level* target);

 private:
  cpu_state& state_;
  handler_level* const outer_;
  saved_vectors* saved_ = nullptr;
};

}  // namespace quern
