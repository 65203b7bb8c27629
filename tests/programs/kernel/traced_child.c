// A child under ptrace runs its SVE code and its handlers as it would alone, if its tracer hands signals on: stopped by
// them, traced by system calls, stepped by single instructions, and attached to as it runs.
#include <signal.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

enum { CALLS = 2 };

static volatile uint64_t sum;
static volatile int handled;

static void handler(int signal) {
  (void)signal;
  if (vectors_work()) ++handled;
}

static int child(void) {
  ptrace(PTRACE_TRACEME, 0, NULL, NULL);
  raise(SIGSTOP);
  signal(SIGUSR1, handler);
  sum = vectors_work() ? 3109296 : 0;
  raise(SIGUSR1);
  for (int i = 0; i < CALLS; ++i) {
    if (vectors_work()) syscall(SYS_getppid);
  }
  return handled == 1 && vectors_work() ? 21 : 22;
}

struct seen {
  int usr1, calls, status;
  uint64_t sum;
};

// Lets the child go on by `request` until it ends. SIGILL stops are the tracee's affair: with an emulator each SVE
// instruction is one.
static struct seen trace(enum __ptrace_request request, int steps) {
  struct seen seen = {0};
  const pid_t pid = fork();
  if (pid == 0) _exit(child());
  int status, signal = 0;
  waitpid(pid, &status, 0);
  ptrace(PTRACE_SETOPTIONS, pid, NULL, PTRACE_O_TRACESYSGOOD);
  for (;;) {
    ptrace(request == PTRACE_SINGLESTEP && steps-- <= 0 ? PTRACE_CONT : request, pid, NULL, signal);
    if (waitpid(pid, &status, 0) != pid || !WIFSTOPPED(status)) break;
    signal = WSTOPSIG(status);
    if (signal == SIGUSR1) {
      ++seen.usr1;
      seen.sum = (uint64_t)ptrace(PTRACE_PEEKDATA, pid, &sum, NULL);
    }
    if (signal == (SIGTRAP | 0x80)) {
      struct __ptrace_syscall_info info;
      ptrace(PTRACE_GET_SYSCALL_INFO, pid, sizeof info, &info);
      seen.calls += info.op == PTRACE_SYSCALL_INFO_ENTRY && info.entry.nr == SYS_getppid;
    }
    if ((signal & 0x7F) == SIGTRAP) signal = 0;
  }
  seen.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return seen;
}

static void check_seen(const char* name, struct seen seen, int calls) {
  printf("%s: status %d, %d times SIGUSR1, %d calls, sum %llu\n", name, seen.status, seen.usr1, seen.calls,
         (unsigned long long)seen.sum);
  check(name, seen.status == 21 && seen.usr1 == 1 && seen.calls == calls && seen.sum == 3109296);
}

// Stops a running child again and again.
static bool attach(void) {
  volatile bool* const stop = mmap(NULL, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  const pid_t pid = fork();
  if (pid == 0) {
    bool right = true;
    while (!*stop) right = vectors_work() && right;
    _exit(right ? 23 : 24);
  }
  int status;
  for (int i = 0; i < 5; ++i) {
    if (ptrace(PTRACE_ATTACH, pid, NULL, NULL) != 0) return false;
    for (;;) {
      if (waitpid(pid, &status, 0) != pid || !WIFSTOPPED(status)) return false;
      if (WSTOPSIG(status) == SIGSTOP) break;
      ptrace(PTRACE_CONT, pid, NULL, WSTOPSIG(status));
    }
    ptrace(PTRACE_DETACH, pid, NULL, NULL);
    usleep(1000);
  }
  *stop = true;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 23;
}

int main(void) {
  alarm(100);
  check_seen("continued", trace(PTRACE_CONT, 0), 0);
  check_seen("traced by calls", trace(PTRACE_SYSCALL, 0), CALLS);
  check_seen("stepped", trace(PTRACE_SINGLESTEP, 100), 0);
  check("attached to", attach());
  return finish("traced_child");
}
