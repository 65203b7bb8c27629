// sigaction, signal and their kin: the application's actions go to a table, and the kernel is given ours.
#include <errno.h>
#include <signal.h>

#include <atomic>
#include <cstring>

#include "sve/trap/host/dispatch.h"
#include "sve/trap/host/export.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/own_actions.h"
#include "sve/trap/host/thread_signals.h"
#include "sve/trap/signal_actions.h"

namespace quern {
namespace {

constinit std::atomic<bool> table_is_changing{false};
constinit std::atomic<signal_set> interrupting{0};  // signals for which siginterrupt(signal, 1) was called last

void* dispatcher() { return reinterpret_cast<void*>(quern_on_signal); }

// Keeps other threads, and signals of this one, from the table and the kernel's actions while the two are changed.
class change_lock {
 public:
  change_lock() {
    while (table_is_changing.exchange(true, std::memory_order_acquire)) {}
  }
  ~change_lock() { table_is_changing.store(false, std::memory_order_release); }
  change_lock(const change_lock&) = delete;
  change_lock& operator=(const change_lock&) = delete;

 private:
  const kernel::blocked_signals blocked_{all_signals};
};

bool may_have_action(int signal) { return signal >= 1 && signal <= signal_count && !contains(library_signals, signal); }

signal_action from_sigaction(const struct sigaction& action) {
  return {reinterpret_cast<void*>(action.sa_sigaction), action.sa_flags, from_sigset(action.sa_mask)};
}

struct sigaction to_sigaction(const signal_action& action) {
  struct sigaction result {};
  result.sa_sigaction = reinterpret_cast<decltype(result.sa_sigaction)>(action.handler);
  result.sa_flags = action.flags;
  to_sigset(action.mask, result.sa_mask);
  return result;
}

// What the application asked for, seen from what the kernel has: of other signals than the traps' only handlers go
// through us, and SA_RESETHAND is the kernel's to carry out.
signal_action as_asked(int signal, const signal_action& in_kernel) {
  return is_trap(signal) || in_kernel.handler == dispatcher() ? application_action(signal) : in_kernel;
}

// Gives the kernel what is to stand there for the application's action.
long install_over(int signal, const signal_action& wanted) {
  const signal_action installed = kernel_action(signal, wanted, dispatcher());
  return kernel::set_action(signal, &installed, nullptr);
}

sighandler_t change_handler(int signal, sighandler_t handler, int flags, signal_set mask) {
  const signal_action wanted{reinterpret_cast<void*>(handler), flags, mask};
  signal_action old{};
  if (handler == SIG_ERR || result_of(change_action(signal, &wanted, &old)) != 0) {
    if (handler == SIG_ERR) errno = EINVAL;
    return SIG_ERR;
  }
  return reinterpret_cast<sighandler_t>(old.handler);
}

}  // namespace

int change_action(int signal, const signal_action* wanted, signal_action* old) {
  if (!may_have_action(signal)) return EINVAL;
  const change_lock lock;
  signal_action in_kernel{};
  if (const long error = kernel::set_action(signal, nullptr, &in_kernel)) return static_cast<int>(-error);
  const signal_action before = as_asked(signal, in_kernel);
  if (wanted) {
    set_application_action(signal, *wanted);
    if (const long error = install_over(signal, *wanted)) {
      set_application_action(signal, before);
      return static_cast<int>(-error);
    }
  }
  if (old) *old = before;
  return 0;
}

void own_trap_signals() {
  for (const int signal : {SIGILL, SIGBUS, SIGSEGV}) {
    const change_lock lock;
    signal_action in_kernel{};
    kernel::set_action(signal, nullptr, &in_kernel);
    // An ignored signal stays so over exec.
    if (is_ignore(in_kernel)) set_application_action(signal, in_kernel);
    install_over(signal, application_action(signal));
  }
}

void own_cancel_signal() {
  const change_lock lock;
  signal_action in_kernel{};
  kernel::set_action(cancel_signal, nullptr, &in_kernel);
  if (!has_handler(in_kernel) || in_kernel.handler == dispatcher()) return;
  set_application_action(cancel_signal, in_kernel);
  install_over(cancel_signal, in_kernel);
}

}  // namespace quern

using namespace quern;

QUERN_EXPORT int sigaction(int signal, const struct sigaction* action, struct sigaction* old) noexcept {
  signal_action wanted{}, before{};
  if (action) wanted = from_sigaction(*action);
  const int error = change_action(signal, action ? &wanted : nullptr, &before);
  if (error == 0 && old) *old = to_sigaction(before);
  return result_of(error);
}

QUERN_EXPORT int __sigaction(int signal, const struct sigaction* action, struct sigaction* old) noexcept {
  return sigaction(signal, action, old);
}

// BSD semantics: the handler stays, system calls are restarted.
QUERN_EXPORT sighandler_t signal(int signal, sighandler_t handler) noexcept {
  if (!may_have_action(signal)) {
    errno = EINVAL;
    return SIG_ERR;
  }
  const bool interrupts = contains(interrupting.load(std::memory_order_relaxed), signal);
  return change_handler(signal, handler, interrupts ? 0 : SA_RESTART, set_of(signal));
}

QUERN_EXPORT sighandler_t bsd_signal(int signal_number, sighandler_t handler) noexcept {
  return signal(signal_number, handler);
}

QUERN_EXPORT sighandler_t ssignal(int signal_number, sighandler_t handler) noexcept {
  return signal(signal_number, handler);
}

// System V semantics: the handler is for one signal only.
QUERN_EXPORT sighandler_t __sysv_signal(int signal, sighandler_t handler) noexcept {
  return change_handler(signal, handler, static_cast<int>(SA_RESETHAND | SA_NODEFER), 0);
}

QUERN_EXPORT sighandler_t sysv_signal(int signal, sighandler_t handler) noexcept {
  return __sysv_signal(signal, handler);
}

QUERN_EXPORT int sigignore(int signal) noexcept {
  const signal_action ignore{reinterpret_cast<void*>(SIG_IGN), 0, 0};
  return result_of(change_action(signal, &ignore, nullptr));
}

QUERN_EXPORT sighandler_t sigset(int signal, sighandler_t disposition) noexcept {
  if (!may_have_action(signal) || disposition == SIG_ERR) {
    errno = EINVAL;
    return SIG_ERR;
  }
  const signal_set set = set_of(signal);
  const bool hold = disposition == SIG_HOLD;
  signal_set mask_before = 0;
  signal_action before{};
  const signal_action wanted{reinterpret_cast<void*>(disposition), 0, 0};
  if (result_of(change_action(signal, hold ? nullptr : &wanted, &before)) != 0) return SIG_ERR;
  change_application_mask(hold ? SIG_BLOCK : SIG_UNBLOCK, &set, &mask_before);
  return contains(mask_before, signal) ? SIG_HOLD : reinterpret_cast<sighandler_t>(before.handler);
}

QUERN_EXPORT int siginterrupt(int signal, int interrupt) noexcept {
  signal_action action{};
  if (const int error = change_action(signal, nullptr, &action)) return result_of(error);
  if (interrupt) {
    interrupting.fetch_or(set_of(signal), std::memory_order_relaxed);
    action.flags &= ~SA_RESTART;
  } else {
    interrupting.fetch_and(~set_of(signal), std::memory_order_relaxed);
    action.flags |= SA_RESTART;
  }
  return result_of(change_action(signal, &action, nullptr));
}
