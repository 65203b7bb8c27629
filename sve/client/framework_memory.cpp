// What the emulator asks about application memory, answered by the framework.
#include "sve/client/framework_memory.h"

#include <unistd.h>

#include <csignal>

#include "sve/client/framework.h"
#include "sve/memory/current_access.h"
#include "sve/memory/guest_memory.h"
#include "sve/memory/memory_host.h"

namespace {

// Whether the page may be read, as opposed to a byte in it that has nothing behind it.
bool is_mapped_readable(std::uint64_t address) {
  dr_mem_info_t info;
  return dr_query_memory_ex(reinterpret_cast<const unsigned char*>(address), &info) && info.type != DR_MEMTYPE_FREE &&
         (info.prot & DR_MEMPROT_READ) != 0;
}

// The framework does not tell a SIGBUS from a SIGSEGV, but the page's protection does.
bool can_read(std::uint64_t address, bool bus_errors_too) {
  unsigned char byte;
  if (dr_safe_read(reinterpret_cast<const void*>(address), sizeof byte, &byte, nullptr)) return true;
  if (!bus_errors_too && is_mapped_readable(address)) {
    quern::note_access(address, sizeof byte, MEM_LOAD);
    byte = *reinterpret_cast<const volatile unsigned char*>(address);
  }
  return false;
}

// The framework takes this handler for the application's own as long as that has set none. SVESigHandler leaves it to
// the instruction that faulted to end the process when it runs again; a signal that was sent must be sent once more.
void end_by_signal(int signal, siginfo_t* info, void* context) {
  SVESigHandler(signal, info, context);
  const bool sent = info->si_code <= 0;
  if (sent) tgkill(getpid(), gettid(), signal);
}

int set_action(int signal, const struct sigaction* action, struct sigaction* old) {
  struct sigaction given = *action;
  if (given.sa_sigaction == SVESigHandler) given.sa_sigaction = end_by_signal;
  return sigaction(signal, &given, old);
}

// Before the emulator's own initialiser, which sets the actions.
__attribute__((constructor(101))) void answer_by_framework() {
  quern::use_memory_host({.set_action = set_action, .probe = can_read});
}

}  // namespace

void quern::use_framework_memory() {
  page_size = static_cast<std::uint32_t>(dr_page_size());
  accesses_are_noted = true;
}
