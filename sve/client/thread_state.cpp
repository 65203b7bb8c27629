// The register file of each application thread, kept in a field of the framework's thread-local storage.
#include "sve/client/thread_state.h"

#include <clocale>

#include "sve/client/client_assert.h"
#include "sve/client/signal_vectors.h"

int quern::tls_idx;

void quern::event_thread_init(void* drcontext) {
  // The framework gives the client a libc of its own, whose locale is unset on threads that it did not start itself:
  // without this, printing a report would crash there.
  uselocale(LC_GLOBAL_LOCALE);
  forget_signal_vectors(drcontext);
  void* const state = dr_thread_alloc(drcontext, sizeof(cpu_state));
  client_assert(drmgr_set_tls_field(drcontext, tls_idx, state), "false");
}

void quern::event_thread_exit(void* drcontext) {
  forget_signal_vectors(drcontext);
  cpu_state* const data = thread_state(drcontext);
  client_assert(data != nullptr, "data != __null");
  dr_thread_free(drcontext, data, sizeof(cpu_state));
}
