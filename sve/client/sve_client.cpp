// The client's life: what the framework calls at the start and at the end of the process.
#include <cstring>

#include "sve/client/application_fault.h"
#include "sve/client/block_rewriting.h"
#include "sve/client/client_assert.h"
#include "sve/client/emulated_place.h"
#include "sve/client/framework.h"
#include "sve/client/framework_memory.h"
#include "sve/client/reported_places.h"
#include "sve/client/shared_code.h"
#include "sve/client/signal_vectors.h"
#include "sve/client/thread_state.h"
#include "sve/memory/trace.h"
#include "sve/memory/trace_forked.h"
#include "sve/memory/trace_vector_length.h"
#include "sve/state/vector_length.h"

namespace quern {
namespace {

// Later frameworks hide the plain call behind a macro of that name, in favour of drmgr's.
#ifdef dr_register_exit_event
constexpr auto register_exit_event = drmgr_register_exit_event;
#else
constexpr auto register_exit_event = dr_register_exit_event;
#endif

// What the framework's argument parser does for a client without options: the first argument decides.
void check_arguments(int argc, const char* argv[]) {
  if (argc < 2 || std::strcmp(argv[1], "--") == 0) return;
  dr_fprintf(our_stderr, "SVE emulation client usage error: Unknown option: %s\n", argv[1]);
  dr_abort();
}

constexpr unsigned int log_level = 1;

// The application's fork runs no handlers of libraries that the framework has loaded for the client.
void event_fork(void*) {
  if (quern_trace_forked) quern_trace_forked();
}

// drreg was never started, yet its end succeeds: it counts its users, and one who never came is not the last.
void event_exit() {
  dr_log(nullptr, DR_LOG_ALL, log_level, "SVE client exiting\n");
  sve_exit();
  client_assert(drmgr_unregister_bb_app2app_event(event_instruction_change) && drreg_exit() == DRREG_SUCCESS, "false");
  free_shared_code();
  free_places();
  drmgr_exit();
}

}  // namespace
}  // namespace quern

DR_EXPORT void dr_client_main(client_id_t, int argc, const char* argv[]) {
  using namespace quern;
  dr_set_client_name("Zel SVE emulation client", "the maintainers of quern");
  check_arguments(argc, argv);
  client_assert(drmgr_init(), "false");
  use_framework_memory();
  open_client_report();
  drmgr_register_thread_init_event(event_thread_init);
  drmgr_register_thread_exit_event(event_thread_exit);
  register_exit_event(event_exit);
  dr_register_fork_init_event(event_fork);
  drmgr_priority_t priority{sizeof priority, "emulate_instruction", nullptr, nullptr, 0};
  client_assert(drmgr_register_bb_app2app_event(event_instruction_change, &priority), "false");
  client_assert(drmgr_register_kernel_xfer_event(event_kernel_transfer), "false");
  client_assert(drmgr_register_signal_event(event_signal), "false");
  tls_idx = drmgr_register_tls_field();
  client_assert(tls_idx != -1, "false");
  if (quern_trace_vector_bytes) quern_trace_vector_bytes(VL_BYTES);
  client_assert(sve_init(0, dr_get_application_name()), "false");
  dr_log(nullptr, DR_LOG_ALL, log_level, "SVE client initializing\n");
}
