// setcontext out of handlers, of faults of emulated loads and of sent signals, again and again, and from handlers that
// were interrupted themselves: the mask and the vectors are those of the context.
#include <signal.h>
#include <sys/mman.h>
#include <ucontext.h>

#include "program.h"
#include "sve_code.h"

enum { ROUNDS = 400, NESTS = 100 };

static ucontext_t back;
static volatile int leaves;
static volatile bool vectors = true;

static void leave(int signal) {
  (void)signal;
  vectors = vectors_work() && vectors;
  ++leaves;
  setcontext(&back);
}

// Interrupts itself by the signal that leaves both.
static void nest(int signal) {
  (void)signal;
  vectors = vectors_work() && vectors;
  raise(SIGUSR2);
}

static bool is_blocked(int signal) {
  sigset_t mask;
  sigprocmask(SIG_BLOCK, NULL, &mask);
  return sigismember(&mask, signal);
}

static bool any_blocked(void) { return is_blocked(SIGSEGV) || is_blocked(SIGUSR1) || is_blocked(SIGUSR2); }

static void leave_faults(void* page) {
  volatile int round = 0;
  getcontext(&back);
  if (round++ < ROUNDS) loaded_sum(page);
}

static void leave_signals(int signal, int rounds) {
  volatile int round = 0;
  getcontext(&back);
  if (round++ < rounds) raise(signal);
}

int main(void) {
  void* const page = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  struct sigaction action = {.sa_handler = leave};
  sigaction(SIGSEGV, &action, NULL);
  sigaction(SIGUSR2, &action, NULL);
  action.sa_handler = nest;
  sigaction(SIGUSR1, &action, NULL);

  leave_faults(page);
  check("out of faults", leaves == ROUNDS && vectors && !any_blocked());
  leave_signals(SIGUSR2, ROUNDS);
  check("out of sent signals", leaves == 2 * ROUNDS && vectors && !any_blocked());
  leave_signals(SIGUSR1, NESTS);
  check("out of two handlers at once", leaves == 2 * ROUNDS + NESTS && vectors && !any_blocked());

  sigset_t one;
  sigemptyset(&one);
  sigaddset(&one, SIGSEGV);
  sigprocmask(SIG_BLOCK, &one, NULL);
  getcontext(&back);
  static volatile bool left;
  if (!left) {
    left = true;
    sigprocmask(SIG_UNBLOCK, &one, NULL);
    raise(SIGUSR2);
  }
  check("mask told", sigismember(&back.uc_sigmask, SIGSEGV) && !sigismember(&back.uc_sigmask, SIGUSR2));
  check("mask brought back", is_blocked(SIGSEGV) && !is_blocked(SIGUSR2));
  check("vectors at the end", vectors_work());
  return finish("context_out_of_handler");
}
