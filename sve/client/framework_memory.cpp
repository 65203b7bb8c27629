// What the emulator asks about application memory, answered by the framework.
#include "sve/client/framework_memory.h"

#include <csignal>

#include "sve/client/framework.h"
#include "sve/memory/guest_memory.h"
#include "sve/memory/memory_host.h"

namespace {

// The framework does not tell a SIGBUS from a SIGSEGV: both mean that the byte can't be read.
bool can_read(std::uint64_t address, bool) {
  unsigned char byte;
  return dr_safe_read(reinterpret_cast<const void*>(address), sizeof byte, &byte, nullptr);
}

}  // namespace

void quern::use_framework_memory() {
  page_size = static_cast<std::uint32_t>(dr_page_size());
  use_memory_host({.set_action = sigaction, .probe = can_read});
}
