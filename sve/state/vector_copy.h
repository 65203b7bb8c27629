// The copy of a whole vector.
#pragma once

#include <atomic>
#include <cstring>

#include "sve/state/lane_group.h"

namespace quern {

// Copies VL_BYTES bytes, from the first on: where all lie in one page, it is the first one's fault. They may be the
// same bytes, but don't overlap otherwise.
inline void copy_vector(unsigned char* to, const unsigned char* from) {
#if defined(__aarch64__) && !defined(__SANITIZE_ADDRESS__)
  // Four registers by one instruction, half as many as by pairs; the compiler makes none.
  if constexpr (VL_BYTES % 64 == 0) {
#pragma GCC unroll 4
    for (std::size_t i = 0; i != VL_BYTES; i += 64)
      asm volatile("ld1 {v0.16b-v3.16b}, [%1], #64\n\tst1 {v0.16b-v3.16b}, [%0], #64"
                   : "+r"(to), "+r"(from)
                   :
                   : "v0", "v1", "v2", "v3", "memory");
    return;
  }
#endif
  set_lane(to, 0, lane<doubles>(from, 0));
  std::atomic_signal_fence(std::memory_order_seq_cst);
  std::memcpy(to + sizeof(doubles), from + sizeof(doubles), VL_BYTES - sizeof(doubles));
}

}  // namespace quern
