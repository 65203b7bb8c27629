// The flags that predicate results set.
#pragma once

#include <cstdint>

#include "sve/state/cpu_state.h"

namespace quern {

// N: the first element is set; Z: none is set; C: the last element is not set. V is always 0.
struct predicate_flags {
  bool n, z, c;
};

// Replaces bits 31 to 28 of nzcv, and keeps all others.
inline void set_flags(cpu_state* state, predicate_flags flags) {
  const std::uint64_t nzcv = std::uint64_t{flags.n} << 31 | std::uint64_t{flags.z} << 30 | std::uint64_t{flags.c} << 29;
  state->nzcv = (state->nzcv & ~std::uint64_t{0xF0000000}) | nzcv;
}

}  // namespace quern
