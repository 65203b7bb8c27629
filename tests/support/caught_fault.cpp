#include "tests/support/caught_fault.h"

#include <csetjmp>
#include <csignal>

namespace quern {
namespace {

sigjmp_buf after_fault;
volatile std::uint64_t fault_address;

void leave(int, siginfo_t* info, void*) {
  fault_address = reinterpret_cast<std::uint64_t>(info->si_addr);
  siglongjmp(after_fault, 1);
}

}  // namespace

std::optional<std::uint64_t> caught_fault(const std::function<void()>& code) {
  static struct sigaction old_segv, old_bus;
  struct sigaction action {};
  action.sa_sigaction = leave;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGSEGV, &action, &old_segv);
  sigaction(SIGBUS, &action, &old_bus);
  const bool faulted = sigsetjmp(after_fault, 1) != 0;
  if (!faulted) code();
  sigaction(SIGSEGV, &old_segv, nullptr);
  sigaction(SIGBUS, &old_bus, nullptr);
  if (!faulted) return std::nullopt;
  return fault_address;
}

}  // namespace quern
