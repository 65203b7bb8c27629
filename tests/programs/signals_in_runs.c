// Runs of many SVE words, next to each other, and loops that are runs, under signals of a high rate in several threads:
// each handler finds the registers of a place between two words, changes SVE registers of its own, and leaves no trace.
#include <pthread.h>
#include <signal.h>
#include <stdatomic.h>
#include <sys/syscall.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>

#include "counting_run.h"
#include "program.h"
#include "sve_code.h"

enum { THREADS = 4, SIGNALS = 300, PASSES = 500 };

static atomic_int handled, strange;
extern const unsigned char counting_loop[], counting_loop_end[];

// Counts to 1000 in x0 by a loop of 500 passes, of which x3 are left.
uint64_t count_by_loop(void);
__asm__(
    ".text\n"
    ".balign 64\n"
    ".type count_by_loop, %function\n"
    "count_by_loop:\n"
    "  cntd x2\n"
    "  mov x3, #500\n"
    "  mov x0, #0\n"
    ".globl counting_loop\n"
    "counting_loop:\n"
    "  uqincd x0\n  sub x3, x3, #1\n  uqincd x0\n  incd x0, all, mul #2\n  decd x0, all, mul #2\n  cbnz x3, "
    "counting_loop\n"
    ".globl counting_loop_end\n"
    "counting_loop_end:\n"
    "  udiv x0, x0, x2\n"
    "  ret\n"
    ".size count_by_loop, .-count_by_loop\n");

// Two a pass, and what the words before this one have added.
static void look_at_loop(uintptr_t pc, const uint64_t* x) {
  static const int added[] = {0, 1, -1, 0, 2, 0, 0};
  const int64_t by_passes = 2 * (PASSES - (int64_t)x[3]);
  if ((int64_t)x[0] != (by_passes + added[(pc - (uintptr_t)counting_loop) / 4]) * (int64_t)x[2]) ++strange;
}

// In the run, X0 is the number of words that are done times X2.
static void look(const ucontext_t* context) {
  const uintptr_t pc = context->uc_mcontext.pc;
  if (pc >= (uintptr_t)counting_loop && pc < (uintptr_t)counting_loop_end)
    look_at_loop(pc, (const uint64_t*)context->uc_mcontext.regs);
  if (pc < (uintptr_t)counting_run || pc > (uintptr_t)counting_run_end) return;
  const uint64_t done = (pc - (uintptr_t)counting_run) / 4, *x = (const uint64_t*)context->uc_mcontext.regs;
  if (pc < (uintptr_t)counting_run_end && x[0] != done * x[2]) ++strange;
}

static void handler(int signal, siginfo_t* info, void* context) {
  (void)signal;
  (void)info;
  look(context);
  if (!vectors_work()) ++strange;
  ++handled;
}

static void* run(void* stop) {
  bool right = true;
  while (!atomic_load((atomic_bool*)stop))
    right = count_by_run() == COUNTED_WORDS && count_by_loop() == 2 * PASSES && vectors_work() && right;
  return right ? stop : NULL;
}

int main(void) {
  const struct sigaction action = {.sa_sigaction = handler, .sa_flags = SA_SIGINFO | SA_RESTART};
  sigaction(SIGUSR1, &action, NULL);
  static atomic_bool stop;
  pthread_t threads[THREADS];
  for (int i = 0; i != THREADS; ++i) pthread_create(&threads[i], NULL, run, &stop);
  // On a machine that has much else to do, many signals may find one that waits still.
  for (int i = 0; i < SIGNALS || handled <= SIGNALS / 4; ++i) {
    pthread_kill(threads[i % THREADS], SIGUSR1);
    const struct timespec pause = {.tv_nsec = 300000};
    nanosleep(&pause, NULL);
  }
  stop = true;
  bool right = true;
  for (int i = 0; i != THREADS; ++i) {
    void* result;
    pthread_join(threads[i], &result);
    right = right && result;
  }
  check("loops", right);
  check("registers in handlers", strange == 0);

  // A handler of one signal only, which arrives in the middle of a run more often than not.
  for (int i = 0; i != 20; ++i) {
    const struct sigaction once = {.sa_sigaction = handler, .sa_flags = SA_SIGINFO | (int)SA_RESETHAND};
    sigaction(SIGALRM, &once, NULL);
    const int before = handled;
    ualarm(700, 0);
    while (handled == before) right = count_by_run() == COUNTED_WORDS && count_by_loop() == 2 * PASSES && right;
    struct sigaction after;
    sigaction(SIGALRM, NULL, &after);
    right = right && after.sa_handler == SIG_DFL;
  }
  check("a handler for one signal", right);
  return finish("signals_in_runs");
}
