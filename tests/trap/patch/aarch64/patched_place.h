// A place of code whose first word branches to generated code, and the way to run it with all registers known.
#pragma once

#include "sve/state/cpu_state.h"
#include "sve/trap/patch/run_code.h"

namespace quern {

// The registers that the processor has: those of a cpu_state without vectors and predicates, and V0 to V31.
struct processor_registers {
  cpu_state state;
  unsigned char v[32][16];
  std::uint64_t own_sp;
};

// Runs the words as patched code on the registers: x, sp, nzcv, fpsr, fpcr and v go to the processor and come back, and
// `registers` is what the code calls the thread's.
void run_patched(std::span<const run_word> run, processor_registers& processor, thread_registers& registers);

// Runs other words, of the processor's own, as they are.
void run_unpatched(std::span<const std::uint32_t> words, processor_registers& processor);

// The code that run_patched made last.
const run_code& last_code();

}  // namespace quern
