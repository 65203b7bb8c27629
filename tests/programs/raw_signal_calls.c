// Masks and actions that are changed by system calls, not by the C library's functions for them.
#include <errno.h>
#include <signal.h>
#include <sys/syscall.h>
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

  check("other calls work", syscall(SYS_getpid) == getpid());
  errno = 0;
  check("and fail as they do", syscall(SYS_close, -1) == -1 && errno == EBADF);
  errno = 0;
  check("a set of another size is refused",
        syscall(SYS_rt_sigprocmask, SIG_BLOCK, NULL, &old, 4) == -1 && errno == EINVAL);
  return finish("raw_signal_calls");
}
