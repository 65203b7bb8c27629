// Where a vector's or a predicate's bytes are in the register file, as loops over them want the address.
#pragma once

#include "sve/state/cpu_state.h"

namespace quern {

// The address, in a register, as the compiler knows nothing of it: else, seeing of what it is made, it makes it anew
// for each access.
template <class Byte>
inline Byte* formed(Byte* address) {
  asm("" : "+r"(address));
  return address;
}

inline unsigned char* bytes_of(cpu_state* state, aarch64_z_reg reg) {
  return formed(formed(state->z[0]) + std::size_t{reg.num} * VL_BYTES);
}
inline unsigned char* bytes_of(cpu_state* state, aarch64_p_reg reg) {
  return formed(formed(state->p[0]) + std::size_t{reg.num} * VL_BYTES);
}

}  // namespace quern
