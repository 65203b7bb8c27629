// General registers as handlers read and write them. Register number 31 is none of X0 to X30: in one operand type it is
// the zero register, in the other the stack pointer.
#pragma once

#include <cstdint>

#include "sve/state/cpu_state.h"

namespace quern {

// Whether the operand is the zero register, to which writes are dropped.
inline bool is_zero_register(aarch64_i_reg reg) { return reg.num == 31; }

// The register's 64 bits, whatever the operand's size (the architecture's X[n]); the zero register is 0.
inline std::uint64_t read_x(const cpu_state* state, aarch64_i_reg reg) {
  return is_zero_register(reg) ? 0 : state->x[reg.num];
}
// Replaces all 64 bits of the register; does nothing to the zero register. Touches nothing else.
inline void write_x(cpu_state* state, aarch64_i_reg reg, std::uint64_t value) {
  if (!is_zero_register(reg)) state->x[reg.num] = value;
}

// Both as above, but number 31 is the stack pointer (SP[]), which is not checked for alignment.
inline std::uint64_t read_x(const cpu_state* state, aarch64_i_rsp_reg reg) {
  return reg.num == 31 ? state->sp : state->x[reg.num];
}
inline void write_x(cpu_state* state, aarch64_i_rsp_reg reg, std::uint64_t value) {
  (reg.num == 31 ? state->sp : state->x[reg.num]) = value;
}

// A signed immediate as a register holds it.
inline std::uint64_t as_register(int immediate) { return static_cast<std::uint64_t>(std::int64_t{immediate}); }

}  // namespace quern
