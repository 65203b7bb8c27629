// What the emulator asks about application memory, answered by the framework.
#include "sve/client/framework_memory.h"

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

}  // namespace

void quern::use_framework_memory() {
  page_size = static_cast<std::uint32_t>(dr_page_size());
  accesses_are_noted = true;
  use_memory_host({.set_action = sigaction, .probe = can_read});
}
