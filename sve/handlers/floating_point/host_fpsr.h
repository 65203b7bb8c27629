// The host's floating-point status register, which direct floating-point handlers compute under.
#pragma once

#include "sve/state/cpu_state.h"

namespace quern {

// Loads the host's FPSR from the state. Elsewhere than on AArch64 handlers accumulate into the state themselves.
inline void load_host_fpsr([[maybe_unused]] const cpu_state* state) {
#ifdef __aarch64__
  const std::uint64_t fpsr = state->fpsr;
  asm volatile("msr fpsr, %0" : : "r"(fpsr) : "memory");
#endif
}

// Stores the host's FPSR, 32 bits, into the state.
inline void store_host_fpsr([[maybe_unused]] cpu_state* state) {
#ifdef __aarch64__
  std::uint64_t fpsr;
  asm volatile("mrs %0, fpsr" : "=r"(fpsr) : : "memory");
  state->fpsr = static_cast<std::uint32_t>(fpsr);
#endif
}

}  // namespace quern
