// The destination of a gather that overwrites its own addresses, as it was before. The instruction runs again when a
// fault of it is handed to the application and mended, and needs all its addresses then.
#pragma once

#include <atomic>
#include <cstring>

#include "sve/state/vector_length.h"

namespace quern {

struct kept_vector {
  unsigned char* z;  // where it belongs; null when none is kept
  unsigned char bytes[VL_BYTES];
};

// Initial-exec, for speed.
extern constinit thread_local kept_vector kept_destination __attribute__((tls_model("initial-exec")));

// Keeps the vector at z from before its first lane is written until after the last access: a fault comes in between.
inline void keep_destination(unsigned char* z) {
  std::memcpy(kept_destination.bytes, z, VL_BYTES);
  kept_destination.z = z;
  std::atomic_signal_fence(std::memory_order_seq_cst);
}
inline void forget_destination() {
  std::atomic_signal_fence(std::memory_order_seq_cst);
  kept_destination.z = nullptr;
}

// Gives the thread's register file back what it had before the instruction that faulted, as far as another run of it
// depends on that. For a host that hands the fault to the application; without one that is kept, does nothing.
void put_destination_back();

}  // namespace quern
