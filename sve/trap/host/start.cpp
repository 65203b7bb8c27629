// The host's constructor and destructor.
#include "sve/trap/host/start.h"

#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>

#include "sve/memory/guest_memory.h"
#include "sve/memory/memory_host.h"
#include "sve/memory/trace.h"
#include "sve/memory/trace_vector_length.h"
#include "sve/state/vector_length.h"
#include "sve/trap/host/handed_environment.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/next.h"
#include "sve/trap/host/own_actions.h"
#include "sve/trap/host/patch.h"
#include "sve/trap/host/probe.h"
#include "sve/trap/host/shown_processor.h"
#include "sve/trap/host/thread_signals.h"
#include "sve/trap/host/trapped_place.h"

namespace quern {
namespace {

// The actions of sve/memory: its handler's place is taken by ours, and the default action, when a fault ends the
// process, is the kernel's.
int set_memory_action(int signal, const struct sigaction* action, struct sigaction*) {
  if (action->sa_sigaction == SVESigHandler) return 0;
  const signal_action standard{};
  kernel::set_action(signal, &standard, nullptr);
  return 0;
}

const char* last_part(const char* path) {
  const char* const slash = std::strrchr(path, '/');
  return slash ? slash + 1 : path;
}

// Before the emulator's own initialiser, which installs its fault handlers: our actions and probe stand then. Before
// the C library's as well, which is to give the environment and the program's name to those that ask for them.
__attribute__((constructor(101))) void start(int argument_count, char** arguments, char** environment) {
  environ = environment;
  show_processor(environment);
  next();
  note_own_variables(environment);
  use_memory_host({set_memory_action, can_read});
  own_trap_signals();
  adopt_kernel_mask();
  open_trap_report();
  pthread_atfork(nullptr, nullptr, forget_waiting);
  pthread_atfork(nullptr, nullptr, forget_patching);
  read_patch_choice();
  if (quern_trace_vector_bytes) quern_trace_vector_bytes(VL_BYTES);
  // It has said on standard error why not.
  if (!sve_init(0, argument_count > 0 ? last_part(arguments[0]) : "")) kernel::leave_by_own_failure();
  at_quick_exit(sve_exit);  // the last to run, being the first that is asked for
}

__attribute__((destructor)) void stop() { sve_exit(); }

}  // namespace

void adopt_kernel_mask() {
  const signal_set blocked = kernel::mask() & never_blocked;
  if (!blocked) return;
  hold_signals(blocked);
  kernel::change_mask(SIG_UNBLOCK, &blocked, nullptr);
}

}  // namespace quern
