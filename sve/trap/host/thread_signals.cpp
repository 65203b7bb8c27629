// The calling thread's held and waiting signals.
#include "sve/trap/host/thread_signals.h"

#include <atomic>

#include "sve/trap/host/kernel.h"

namespace quern {
namespace {

// Atomic since a signal may arrive between any two instructions of the thread; no other thread looks.
constinit thread_local std::atomic<signal_set> held{0};
constinit thread_local std::atomic<signal_set> waiting{0};

siginfo_t& waiting_info(int signal) {
  constinit static thread_local siginfo_t infos[3]{};
  return infos[signal == SIGILL ? 0 : signal == SIGBUS ? 1 : 2];
}

}  // namespace

signal_set held_signals() { return held.load(std::memory_order_relaxed); }

signal_set waiting_signals() { return waiting.load(std::memory_order_relaxed); }

bool hold_and_release(signal_set set) {
  held.store(set & never_blocked, std::memory_order_relaxed);
  bool released = false;
  siginfo_t info;
  while (const int signal = take_waiting(~held_signals(), info)) {
    kernel::queue_to_self(signal, info);
    released = true;
  }
  return released;
}

signal_set hold_signals(signal_set set) {
  const signal_set before = held_signals();
  hold_and_release(set);
  return before;
}

void keep_waiting(int signal, const siginfo_t& info) {
  if (contains(waiting_signals(), signal)) return;
  waiting_info(signal) = info;
  waiting.fetch_or(set_of(signal), std::memory_order_relaxed);
}

int take_waiting(signal_set set, siginfo_t& info) {
  for (const int signal : {SIGILL, SIGBUS, SIGSEGV}) {
    if (!contains(set & waiting_signals(), signal)) continue;
    info = waiting_info(signal);
    waiting.fetch_and(~set_of(signal), std::memory_order_relaxed);
    return signal;
  }
  return 0;
}

void forget_waiting() { waiting.store(0, std::memory_order_relaxed); }

signal_set application_mask() { return kernel::mask() | held_signals(); }

int change_application_mask(int how, const signal_set* set, signal_set* old) {
  const signal_set kept_out = never_blocked | library_signals;
  const signal_set kernel_set = set ? *set & ~kept_out : 0;
  signal_set kernel_old = 0;
  const long result = kernel::change_mask(how, set ? &kernel_set : nullptr, &kernel_old);
  if (result != 0) return static_cast<int>(-result);
  const signal_set held_before = held_signals();
  if (set) hold_signals(changed_mask(held_before, how, *set));
  if (old) *old = kernel_old | held_before;
  return 0;
}

inherited_mask::inherited_mask() : held_(held_signals()) {
  if (held_) kernel::change_mask(SIG_BLOCK, &held_, nullptr);
}

inherited_mask::~inherited_mask() {
  if (held_) kernel::change_mask(SIG_UNBLOCK, &held_, nullptr);
}

}  // namespace quern
