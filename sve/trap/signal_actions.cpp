// Table of the application's signal actions, readable from signal handlers.
#include "sve/trap/signal_actions.h"

#include <array>
#include <atomic>

namespace quern {
namespace {

struct action_slot {
  std::atomic<void*> handler;
  std::atomic<int> flags;
  std::atomic<signal_set> mask;
};

constinit std::array<action_slot, signal_count + 1> actions{};

}  // namespace

signal_action kernel_action(int signal, const signal_action& wanted, void* dispatcher) {
  const signal_set mask = wanted.mask & ~never_blocked;
  if (!is_trap(signal)) {
    if (!has_handler(wanted)) return {wanted.handler, wanted.flags, mask};
    return {dispatcher, wanted.flags | SA_SIGINFO, mask};
  }
  // A sent signal that is ignored must not interrupt a system call.
  const int restart = is_ignore(wanted) ? SA_RESTART : wanted.flags & SA_RESTART;
  const int flags = SA_SIGINFO | restart;
  // The frame of an emulated instruction stays on the stack that runs it: an alternate stack is for the application's
  // handlers, and has no room for one of ours beneath.
  if (signal == SIGILL) return {dispatcher, flags, ~trap_signals};
  return {dispatcher, flags | (wanted.flags & (SA_ONSTACK | SA_NODEFER)), mask};
}

signal_action application_action(int signal) {
  const action_slot& slot = actions[static_cast<std::size_t>(signal)];
  return {slot.handler.load(std::memory_order_acquire), slot.flags.load(std::memory_order_relaxed),
          slot.mask.load(std::memory_order_relaxed)};
}

void set_application_action(int signal, const signal_action& action) {
  action_slot& slot = actions[static_cast<std::size_t>(signal)];
  slot.flags.store(action.flags, std::memory_order_relaxed);
  slot.mask.store(action.mask, std::memory_order_relaxed);
  slot.handler.store(action.handler, std::memory_order_release);
}

}  // namespace quern
