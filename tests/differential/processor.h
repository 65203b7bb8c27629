// The processor with SVE that this program runs on, as the judge of instruction words.
#pragma once

#include <csignal>
#include <cstdint>

#include "sve/state/cpu_state.h"

namespace quern {

// Sets the processor's vector length for this process to VL_BYTES. False, with a line on standard output, when the
// processor has no SVE or not that length.
bool prepare_processor();

// Catches SIGILL, SIGSEGV and SIGBUS from now on: what run_caught() runs may raise them, with any stack pointer.
void catch_faults();

// Runs f; answers 0, or the signal that ended it.
int run_caught(void (*f)(void*), void* argument);

// Runs `word` on the processor with the registers of `state`, which become what the processor leaves. A predicate byte
// goes in as its bit 0 and comes back as 0 or 1. Of nzcv, bits 31 to 28 alone change. Answers 0, or the signal that the
// word raised; then `state` keeps its values.
int run_on_processor(std::uint32_t word, cpu_state& state);

// Calls the emulator's routine in the same way.
int run_on_emulator(sve_handler handler, std::uint32_t word, cpu_state& state);

}  // namespace quern
