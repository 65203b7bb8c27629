// The registers that a load overwrites, as they were before. When its fault is handed to the application, those are the
// registers to be seen; and a gather may overwrite its own addresses, which it needs when it runs again.
#pragma once

#include <atomic>

#include "sve/memory/trace.h"
#include "sve/state/vector_copy.h"

namespace quern {

inline constexpr unsigned max_destinations = 4;  // a structure's registers

struct kept_registers {
  unsigned count;  // 0 when none is kept
  unsigned char* places[max_destinations];
  unsigned char bytes[max_destinations][VL_BYTES];
};

// Initial-exec, for speed.
extern constinit thread_local kept_registers kept_destination __attribute__((tls_model("initial-exec")));

// Keeps N registers for its lifetime: from before the first write to one of them until after the last access. Only for
// loads that may fault after a write. For stores it is nothing.
template <memaccess_type_t kind, unsigned N>
class destination_kept {
 public:
  explicit destination_kept(unsigned char* const (&registers)[N]) {
    static_assert(N <= max_destinations);
    if constexpr (kind == MEM_LOAD) {
      for (unsigned i = 0; i != N; ++i) {
        copy_vector(kept_destination.bytes[i], registers[i]);
        kept_destination.places[i] = registers[i];
      }
      kept_destination.count = N;
      std::atomic_signal_fence(std::memory_order_seq_cst);
    }
  }
  ~destination_kept() {
    if constexpr (kind == MEM_LOAD) {
      std::atomic_signal_fence(std::memory_order_seq_cst);
      kept_destination.count = 0;
    }
  }
  destination_kept(const destination_kept&) = delete;
  destination_kept& operator=(const destination_kept&) = delete;
};

// Gives the thread's register file back what it had before the load that faulted. For a host that hands the fault to
// the application; where none is kept, does nothing.
void put_destination_back();

}  // namespace quern
