// The register file of each application thread, kept in a field of the framework's thread-local storage.
#pragma once

#include "sve/client/emulated_place.h"
#include "sve/client/framework.h"
#include "sve/state/cpu_state.h"

namespace quern {

// The index of the client's one field. Set once, at start-up.
extern int tls_idx;

// What a thread has: the register file first, then what the shared code keeps during a call-out, and where the
// framework gave the memory.
struct thread_block {
  cpu_state state;
  const emulated_place* place;
  app_pc return_address;
  unsigned int call_outs;  // since the thread has last left the linked blocks
  void* allocation;
};

// Thread events. The first makes the thread's cpu_state, uninitialised, at the start of a cache line; the second
// frees it.
void event_thread_init(void* drcontext);
void event_thread_exit(void* drcontext);

// A thread leaves the blocks that the framework has linked to each other after so many call-outs: a signal that came
// during one is handed on then, and not before.
inline constexpr unsigned int most_call_outs = 1024;

// The register file of the thread; null only before its init event.
inline cpu_state* thread_state(void* drcontext) {
  return static_cast<cpu_state*>(drmgr_get_tls_field(drcontext, tls_idx));
}

}  // namespace quern
