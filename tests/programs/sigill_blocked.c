// An undefined word while SIGILL is blocked ends the process although there is a handler.
#include <signal.h>
#include <stdlib.h>

#include "program.h"
#include "sve_code.h"

static void handler(int signal) {
  (void)signal;
  _Exit(3);
}

int main(void) {
  signal(SIGILL, handler);
  sigset_t set;
  sigfillset(&set);
  sigprocmask(SIG_SETMASK, &set, NULL);
  check("vectors", vectors_work());
  fflush(stdout);
  __asm__ volatile(".inst 0");
  return finish("sigill_blocked");
}
