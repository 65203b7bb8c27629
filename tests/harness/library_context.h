// The context of a call of the vector library.
#pragma once

#include <cstdint>

#include "sve/state/cpu_context.h"

namespace quern {

// As a thunk makes it, with all else zero.
inline CpuContext library_context(std::uint32_t vl_units = VL_BITS / 64, std::uint32_t nzcv = 0) {
  CpuContext ctx{};
  ctx.vl_units = vl_units;
  ctx.nzcv = nzcv;
  return ctx;
}

}  // namespace quern
