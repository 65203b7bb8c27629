// sigprocmask and its kin, and the calls that wait with a mask: SIGILL stays out of the kernel's masks, and the
// application is told the mask that it asked for.
#include <errno.h>
#include <fcntl.h>

#include "sve/trap/host/export.h"
#include "sve/trap/host/kernel.h"
#include "sve/trap/host/next.h"
#include "sve/trap/host/thread_signals.h"
#include "sve/trap/host/waiting_set.h"

namespace quern {
namespace {

int change_mask(int how, const sigset_t* set, sigset_t* old) {
  const signal_set wanted = set ? from_sigset(*set) : 0;
  signal_set before = 0;
  const int error = change_application_mask(how, set ? &wanted : nullptr, &before);
  if (error == 0 && old) {
    *old = {};
    to_sigset(before, *old);
  }
  return error;
}

int change_one(int how, int signal) {
  if (signal < 1 || signal > signal_count || contains(library_signals, signal)) return result_of(EINVAL);
  const signal_set set = set_of(signal);
  return result_of(change_application_mask(how, &set, nullptr));
}

// Calls wait(mask for the kernel); at once interrupted if the mask lets a waiting signal go.
template <typename Wait>
int wait_with_mask(const sigset_t* mask, Wait wait) {
  if (!mask) return wait(nullptr);
  return wait_with_set(from_sigset(*mask), [&](const signal_set& kernel_set) {
    sigset_t kernel_mask{};
    to_sigset(kernel_set, kernel_mask);
    return wait(&kernel_mask);
  });
}

int suspend(signal_set mask) {
  sigset_t set{};
  to_sigset(mask, set);
  return wait_with_mask(&set, [](const sigset_t* kernel_mask) { return next().sigsuspend(kernel_mask); });
}

}  // namespace
}  // namespace quern

using namespace quern;

QUERN_EXPORT int sigprocmask(int how, const sigset_t* set, sigset_t* old) noexcept {
  return result_of(change_mask(how, set, old));
}

QUERN_EXPORT int pthread_sigmask(int how, const sigset_t* set, sigset_t* old) noexcept {
  return change_mask(how, set, old);
}

QUERN_EXPORT int sighold(int signal) noexcept { return change_one(SIG_BLOCK, signal); }

QUERN_EXPORT int sigrelse(int signal) noexcept { return change_one(SIG_UNBLOCK, signal); }

QUERN_EXPORT int sigblock(int mask) noexcept {
  const signal_set set = static_cast<unsigned>(mask);
  signal_set before = 0;
  change_application_mask(SIG_BLOCK, &set, &before);
  return static_cast<int>(before);
}

QUERN_EXPORT int sigsetmask(int mask) noexcept {
  const signal_set set = static_cast<unsigned>(mask);
  signal_set before = 0;
  change_application_mask(SIG_SETMASK, &set, &before);
  return static_cast<int>(before);
}

QUERN_EXPORT int siggetmask() noexcept { return static_cast<int>(application_mask()); }

QUERN_EXPORT int sigpending(sigset_t* set) noexcept {
  *set = {};
  to_sigset(kernel::pending() | waiting_signals(), *set);
  return 0;
}

QUERN_EXPORT int sigsuspend(const sigset_t* mask) { return suspend(from_sigset(*mask)); }

QUERN_EXPORT int __sigsuspend(const sigset_t* mask) { return sigsuspend(mask); }

QUERN_EXPORT int __xpg_sigpause(int signal) {
  if (signal < 1 || signal > signal_count) return result_of(EINVAL);
  return suspend(application_mask() & ~set_of(signal));
}

QUERN_EXPORT int __sigpause(int signal_or_mask, int is_signal) {
  return is_signal ? __xpg_sigpause(signal_or_mask) : suspend(static_cast<unsigned>(signal_or_mask));
}

// The header gives the name to __xpg_sigpause; the symbol is the BSD function's.
QUERN_EXPORT int bsd_sigpause(int mask) asm("sigpause");
int bsd_sigpause(int mask) { return __sigpause(mask, 0); }

QUERN_EXPORT int sigtimedwait(const sigset_t* set, siginfo_t* info, const timespec* timeout) {
  siginfo_t waited;
  if (const int signal = take_waiting(from_sigset(*set), waited)) {
    if (info) *info = waited;
    return signal;
  }
  return next().sigtimedwait(set, info, timeout);
}

QUERN_EXPORT int sigwaitinfo(const sigset_t* set, siginfo_t* info) { return sigtimedwait(set, info, nullptr); }

QUERN_EXPORT int sigwait(const sigset_t* set, int* signal) {
  const int before = errno;
  int result;
  do {
    result = sigtimedwait(set, nullptr, nullptr);
  } while (result < 0 && errno == EINTR);
  const int error = result < 0 ? errno : 0;
  errno = before;
  if (error == 0) *signal = result;
  return error;
}

QUERN_EXPORT int pselect(int count, fd_set* readable, fd_set* writable, fd_set* exceptional, const timespec* timeout,
                         const sigset_t* mask) {
  return wait_with_mask(mask, [&](const sigset_t* kernel_mask) {
    return next().pselect(count, readable, writable, exceptional, timeout, kernel_mask);
  });
}

QUERN_EXPORT int ppoll(pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask) {
  return wait_with_mask(
      mask, [&](const sigset_t* kernel_mask) { return next().ppoll(descriptors, count, timeout, kernel_mask); });
}

// ppoll of programs compiled with _FORTIFY_SOURCE, which tell the room at `descriptors`.
QUERN_EXPORT int __ppoll_chk(pollfd* descriptors, nfds_t count, const timespec* timeout, const sigset_t* mask,
                             size_t room) {
  if (room / sizeof *descriptors < count) abort();
  return ppoll(descriptors, count, timeout, mask);
}

QUERN_EXPORT int epoll_pwait(int epoll, epoll_event* events, int room, int timeout, const sigset_t* mask) {
  return wait_with_mask(
      mask, [&](const sigset_t* kernel_mask) { return next().epoll_pwait(epoll, events, room, timeout, kernel_mask); });
}

QUERN_EXPORT int epoll_pwait2(int epoll, epoll_event* events, int room, const timespec* timeout, const sigset_t* mask) {
  if (!next().epoll_pwait2) return result_of(ENOSYS);
  return wait_with_mask(mask, [&](const sigset_t* kernel_mask) {
    return next().epoll_pwait2(epoll, events, room, timeout, kernel_mask);
  });
}
