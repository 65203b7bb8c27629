// Children confined by seccomp run SVE code, first-fault loads and handlers of faults with no more system calls than on
// a processor with SVE: in the strict mode that knows read, write, exit and the return from a handler, and under a
// filter.
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <stddef.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "guarded_pages.h"
#include "program.h"
#include "sve_code.h"

static uint8_t* end;
static void* page;
static volatile bool vectors_in_handler;

// The number of lanes that a first-fault load of words brings, of 5 that can be read.
static uint64_t lanes_before(const uint8_t* unreadable) {
  uint64_t lanes;
  __asm__ volatile("ptrue p0.s\n setffr\n ldff1w {z0.s}, p0/z, [%[first]]\n rdffr p1.b\n cntp %[lanes], p0, p1.s\n"
                   : [lanes] "=r"(lanes)
                   : [first] "r"(unreadable - 20)
                   : "z0", "p0", "p1", "memory");
  return lanes;
}

// A processor may bring fewer lanes than it could.
static bool loads_work(void) {
  const uint64_t lanes = lanes_before(end);
  return vectors_work() && lanes >= 1 && lanes <= 5;
}

static void mend(int signal) {
  (void)signal;
  vectors_in_handler = vectors_work();
  mprotect(page, 4096, PROT_READ | PROT_WRITE);
}

static bool fault_is_mended(void) { return loaded_sum(page) == 0 && vectors_in_handler && vectors_work(); }

static void confine_strictly(void) { prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT); }

#define ALLOW(call) BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_##call, 0, 1), BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)

static void confine_by_filter(void) {
  struct sock_filter rules[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, nr)),
                                ALLOW(rt_sigreturn),
                                ALLOW(exit),
                                ALLOW(mprotect),
                                ALLOW(rt_sigprocmask),
                                BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS)};
  const struct sock_fprog filter = {sizeof rules / sizeof *rules, rules};
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
}

static bool runs_in_child(void (*confine)(void), bool (*run)(void)) {
  const pid_t child = fork();
  if (child == 0) {
    confine();
    syscall(SYS_exit, run() ? 31 : 32);
  }
  int status;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 31;
}

int main(void) {
  end = end_of_readable(1);
  page = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  const struct sigaction action = {.sa_handler = mend};
  sigaction(SIGSEGV, &action, NULL);
  check("strict: vectors", runs_in_child(confine_strictly, vectors_work));
  check("strict: first-fault loads", runs_in_child(confine_strictly, loads_work));
  check("filter: vectors", runs_in_child(confine_by_filter, vectors_work));
  check("filter: first-fault loads", runs_in_child(confine_by_filter, loads_work));
  check("filter: a mended fault", runs_in_child(confine_by_filter, fault_is_mended));
  return finish("confined_child");
}
