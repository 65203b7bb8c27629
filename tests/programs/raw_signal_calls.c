// Masks and actions that are changed by system calls, not by the C library's functions for them.
#include <errno.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>

#include "guarded_pages.h"
#include "program.h"
#include "sve_code.h"

typedef uint64_t kernel_set;
typedef struct {
  void* handler;
  unsigned long flags;
  void* restorer;
  kernel_set mask;
} kernel_action;

static const kernel_set all = ~(kernel_set)0, usr1 = (kernel_set)1 << (SIGUSR1 - 1),
                        ill = (kernel_set)1 << (SIGILL - 1);

static volatile bool handler_works;
static void on_usr1(int signal) { handler_works = signal == SIGUSR1 && vectors_work(); }

static volatile uintptr_t fault_place;
static void on_segv(int signal, siginfo_t* info, void* context) {
  (void)signal, (void)info;
  fault_place = ((ucontext_t*)context)->uc_mcontext.pc;
  ((ucontext_t*)context)->uc_mcontext.pc += 4;
}

static long change_mask(int how, const kernel_set* set, kernel_set* old) {
  return syscall(SYS_rt_sigprocmask, how, set, old, sizeof *set);
}
static long change_action(int signal, const kernel_action* action, kernel_action* old) {
  return syscall(SYS_rt_sigaction, signal, action, old, sizeof action->mask);
}

static volatile bool alarm_works;
static void on_alarm(int signal) { alarm_works = signal == SIGALRM && vectors_work(); }

// A call that waits with a mask that lets an alarm alone through, whose handler uses vectors.
static bool waits(long call(const kernel_set* mask)) {
  const kernel_set mask = ~((kernel_set)1 << (SIGALRM - 1));
  alarm_works = false;
  ualarm(20000, 0);
  errno = 0;
  return call(&mask) == -1 && errno == EINTR && alarm_works && vectors_work();
}

static long suspend(const kernel_set* mask) { return syscall(SYS_rt_sigsuspend, mask, sizeof *mask); }
static long poll_nothing(const kernel_set* mask) { return syscall(SYS_ppoll, NULL, 0, NULL, mask, sizeof *mask); }
static long select_nothing(const kernel_set* mask) {
  const struct {
    const kernel_set* mask;
    size_t size;
  } record = {mask, sizeof *mask};
  return syscall(SYS_pselect6, 0, NULL, NULL, NULL, NULL, &record);
}
static long wait_for_events(const kernel_set* mask) {
  struct epoll_event event;
  static int epoll = -1;
  if (epoll < 0) epoll = epoll_create1(0);
  return syscall(SYS_epoll_pwait, epoll, &event, 1, -1, mask, sizeof *mask);
}

static void check_waiting(void) {
  signal(SIGALRM, on_alarm);
  check("rt_sigsuspend", waits(suspend));
  check("ppoll", waits(poll_nothing));
  check("pselect6", waits(select_nothing));
  check("epoll_pwait", waits(wait_for_events));
  const struct timespec none = {0};
  check("without a mask", syscall(SYS_pselect6, 0, NULL, NULL, NULL, &none, NULL) == 0 &&
                              syscall(SYS_ppoll, NULL, 0, &none, NULL, 8) == 0);
}

int main(void) {
  kernel_set before = all, meanwhile = 0;
  change_mask(SIG_SETMASK, &all, &before);
  check("vectors work with all signals blocked", vectors_work());
  change_mask(SIG_SETMASK, &before, &meanwhile);
  check("no signal was blocked before", before == 0);
  check("SIGILL and SIGUSR1 were blocked meanwhile", (meanwhile & ill) && (meanwhile & usr1));

  const kernel_action usr1_action = {(void*)on_usr1, 0, NULL, all};
  kernel_action old = {0};
  change_action(SIGUSR1, &usr1_action, NULL);
  raise(SIGUSR1);
  check("vectors work in a handler that blocks all", handler_works);
  change_action(SIGUSR1, NULL, &old);
  check("the action is told as it was set", old.handler == (void*)on_usr1 && (old.mask & ill));

  const kernel_action segv_action = {(void*)on_segv, SA_SIGINFO, NULL, 0};
  change_action(SIGSEGV, &segv_action, NULL);
  loaded_sum(end_of_readable(1));
  check("a fault reaches the handler", fault_place == (uintptr_t)loaded_sum_load);

  check_waiting();
  check("other calls work", syscall(SYS_getpid) == getpid());
  errno = 0;
  check("and fail as they do", syscall(SYS_close, -1) == -1 && errno == EBADF);
  errno = 0;
  check("a set of another size is refused",
        syscall(SYS_rt_sigprocmask, SIG_BLOCK, NULL, &old, 4) == -1 && errno == EINVAL);
  return finish("raw_signal_calls");
}
