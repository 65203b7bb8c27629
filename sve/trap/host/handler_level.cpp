// The calling thread's nest of handler levels.
#include "sve/trap/host/handler_level.h"

#include <atomic>

#include "sve/trap/host/kernel.h"

namespace quern {
namespace {

// Atomic since signals arrive between any two instructions of the thread; no other thread looks.
constinit thread_local std::atomic<handler_level*> current{nullptr};

}  // namespace

handler_level::handler_level(cpu_state& state) : state_(state), outer_(innermost()) {
  current.store(this, std::memory_order_relaxed);
}

// Out of the nest first: a signal that arrives meanwhile then keeps what is brought back so far at a level of its own.
handler_level::~handler_level() {
  current.store(outer_, std::memory_order_relaxed);
  std::atomic_signal_fence(std::memory_order_seq_cst);
  if (saved_) restore_vectors(*saved_, state_);
  release_vectors(saved_);
}

handler_level* handler_level::innermost() { return current.load(std::memory_order_relaxed); }

void handler_level::keep_vectors() {
  if (saved_) return;
  saved_ = save_vectors(state_);
  if (saved_) return;
  kernel::print_error("quern: too many signal handlers run SVE instructions at once\n");
  kernel::leave_by_own_failure();
}

void handler_level::jump_out_to(handler_level* target) {
  handler_level* level = innermost();
  while (level && level != target) level = level->outer_;
  if (level != target) return;
  for (level = innermost(); level != target; level = level->outer_) release_vectors(level->saved_);
  current.store(target, std::memory_order_relaxed);
}

}  // namespace quern
