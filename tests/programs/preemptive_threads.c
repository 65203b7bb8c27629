// Threads of the program's own making: a timer's handler switches from one context to the next, in the middle of SVE
// code that checks its own sums, and each has its vectors back when it goes on.
#include <signal.h>
#include <stdlib.h>
#include <sys/time.h>
#include <ucontext.h>

#include "program.h"
#include "sve_code.h"

enum { CONTEXTS = 4, SWITCHES = 200, STACK_BYTES = 262144 };
static sigset_t tick;
static ucontext_t main_context, contexts[CONTEXTS];
static int current;
static volatile int switches;
static volatile bool finished[CONTEXTS];
static int wrong[CONTEXTS], sums[CONTEXTS];

// Keeps values in vectors and predicates for a while and tells whether they are there still.
static bool registers_stay(uint32_t first) {
  uint32_t different;
  __asm__ volatile(
      "  index z8.s, %w[first], #3\n"
      "  index z30.s, %w[first], #3\n"
      "  ptrue p4.s\n"
      "  whilelo p5.s, xzr, %[count]\n"
      "  mov x9, #400\n"
      "1: subs x9, x9, #1\n"
      "  b.ne 1b\n"
      "  cmpne p6.s, p4/z, z8.s, z30.s\n"
      "  cntp x9, p4, p6.s\n"
      "  cntp x10, p4, p5.s\n"
      "  sub x10, x10, %[count]\n"
      "  orr %w[different], w9, w10\n"
      : [different] "=r"(different)
      : [first] "r"(first), [count] "r"((uint64_t)(1 + first % vector_words()))
      : "x9", "x10", "z8", "z30", "p4", "p5", "p6", "cc");
  return different == 0;
}

static void run(void) {
  const int self = current;
  sigprocmask(SIG_UNBLOCK, &tick, NULL);
  while (switches < SWITCHES) {
    if (!registers_stay((uint32_t)(self * 1000 + sums[self])) || !vectors_work()) ++wrong[self];
    ++sums[self];
  }
  finished[self] = true;
  for (;;) {}  // until the timer's handler sees that all have finished
}

static void next_context(int signal) {
  (void)signal;
  if (!vectors_work()) ++failed_checks;
  ++switches;
  bool all = true;
  for (int i = 0; i < CONTEXTS; ++i) all = all && finished[i];
  const int from = current;
  current = (current + 1) % CONTEXTS;
  swapcontext(&contexts[from], all ? &main_context : &contexts[current]);
}

int main(void) {
  sigemptyset(&tick);
  sigaddset(&tick, SIGALRM);
  sigprocmask(SIG_BLOCK, &tick, NULL);
  for (int i = 0; i < CONTEXTS; ++i) {
    getcontext(&contexts[i]);
    contexts[i].uc_stack.ss_sp = malloc(STACK_BYTES);
    contexts[i].uc_stack.ss_size = STACK_BYTES;
    contexts[i].uc_sigmask = tick;  // no switch within a switch
    makecontext(&contexts[i], run, 0);
  }
  struct sigaction action = {.sa_handler = next_context, .sa_flags = SA_RESTART};
  sigaction(SIGALRM, &action, NULL);
  const struct itimerval often = {.it_interval = {.tv_usec = 3000}, .it_value = {.tv_usec = 3000}}, never = {0};
  setitimer(ITIMER_REAL, &often, NULL);
  swapcontext(&main_context, &contexts[0]);
  setitimer(ITIMER_REAL, &never, NULL);
  check("switched often", switches >= SWITCHES);
  for (int i = 0; i < CONTEXTS; ++i) check("sums of a context", sums[i] > 0 && wrong[i] == 0);
  return finish("preemptive_threads");
}
