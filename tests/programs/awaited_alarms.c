// Loops of SVE instructions and little else that only a signal ends: it is to arrive in each.
#include <signal.h>
#include <sys/time.h>

#include "program.h"

enum { ROUNDS = 20 };

static volatile sig_atomic_t alarms;

static void handler(int signal) {
  (void)signal;
  ++alarms;
}

static void wait_by_vectors(int wanted) {
  uint64_t length = 0;
  while (alarms != wanted) {
    __asm__ volatile(
        ".arch armv8-a+sve\n"
        "  ptrue p0.s\n"
        "  add z0.s, z0.s, z1.s\n"
        "  incd %0\n"
        "  decd %0\n"
        : "+r"(length)
        :
        : "z0", "p0");
  }
}

int main(void) {
  const struct sigaction action = {.sa_handler = handler};
  sigaction(SIGALRM, &action, NULL);
  for (int i = 0; i < ROUNDS; ++i) {
    const struct itimerval soon = {.it_value = {.tv_usec = 500 + i * 37}};
    setitimer(ITIMER_REAL, &soon, NULL);
    wait_by_vectors(i + 1);
  }
  check("alarms", alarms == ROUNDS);
  return finish("awaited_alarms");
}
