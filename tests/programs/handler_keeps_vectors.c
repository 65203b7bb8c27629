// Handlers that run SVE code leave the vectors and predicates of the code that they interrupt alone, however deep they
// nest.
#include <signal.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

static volatile int calls, ticks;

static void handler(int signal) {
  ++calls;
  if (!vectors_work()) ++failed_checks;
  __asm__ volatile("ptrue p1.h\n mov z7.b, #99\n rdffr p2.b\n" : : : "z7", "p1", "p2");
  if (signal == SIGUSR1) raise(SIGUSR2);
  if (!vectors_work()) ++failed_checks;
}

static void tick(int signal) {
  (void)signal;
  ++ticks;
  if (!vectors_work()) ++failed_checks;
}

// Fills z7 and p1, sends this thread SIGUSR1 with no call between, and stores them.
static void interrupted(uint32_t* words, uint8_t* predicate) {
  const long this_thread = syscall(SYS_gettid);
  register long number __asm__("x8") = SYS_tkill;
  register long thread __asm__("x0") = this_thread;
  register long signal __asm__("x1") = SIGUSR1;
  __asm__ volatile(
      "index z7.s, #3, #5\n"
      "ptrue p1.s, vl4\n"
      "svc #0\n"
      "ptrue p0.s\n"
      "st1w {z7.s}, p0, [%[words]]\n"
      "str p1, [%[predicate]]\n"
      : "+r"(thread)
      : "r"(number), "r"(signal), [words] "r"(words), [predicate] "r"(predicate)
      : "z7", "p0", "p1", "memory");
}

int main(void) {
  struct sigaction action = {.sa_handler = handler};
  sigaction(SIGUSR1, &action, NULL);
  sigaction(SIGUSR2, &action, NULL);
  uint32_t words[64];
  uint8_t predicate[32];
  interrupted(words, predicate);
  check("two handlers ran", calls == 2);
  bool kept = true;
  for (size_t i = 0; i < vector_words(); ++i) kept = kept && words[i] == 3 + 5 * i;
  check("vector kept", kept);
  check("predicate kept", predicate[0] == 0x11 && predicate[1] == 0x11);

  action.sa_handler = tick;
  action.sa_flags = SA_RESTART;
  sigaction(SIGALRM, &action, NULL);
  const struct itimerval often = {.it_interval = {.tv_usec = 500}, .it_value = {.tv_usec = 500}};
  setitimer(ITIMER_REAL, &often, NULL);
  while (ticks < 50) {
    if (!vectors_work()) ++failed_checks;
  }
  check("vectors under a timer", failed_checks == 0);
  return finish("handler_keeps_vectors");
}
