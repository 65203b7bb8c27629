// The probe is one load at a known address, with its answer in x0.
#include "sve/trap/host/probe.h"

#include <csignal>

#include "sve/trap/host/emulate.h"
#include "sve/trap/host/kernel.h"

asm(R"(
  .text
  .globl quern_probe
  .hidden quern_probe
  .globl quern_probe_load
  .hidden quern_probe_load
  .type quern_probe, %function
quern_probe:
  .cfi_startproc
  mov x2, x0
  mov w0, #1
quern_probe_load:
  ldrb w2, [x2]
  ret
  .cfi_endproc
  .size quern_probe, .-quern_probe
)");

extern "C" const unsigned char quern_probe_load[];

namespace quern {

bool can_read(std::uint64_t address, bool bus_errors_too) {
  const ucontext_t* const frame = emulated_frame();
  const signal_set blocked = frame ? from_sigset(frame->uc_sigmask) : kernel::mask();
  const bool faults_kill = blocked & (set_of(SIGSEGV) | set_of(SIGBUS));
  return faults_kill ? kernel::can_read(address) : quern_probe(address, bus_errors_too);
}

bool recover_probe(ucontext_t& frame) {
  mcontext_t& machine = frame.uc_mcontext;
  if (machine.pc != reinterpret_cast<std::uintptr_t>(quern_probe_load)) return false;
  machine.regs[0] = false;
  machine.pc += 4;
  return true;
}

}  // namespace quern
