// A SIGSEGV that is sent, with no handler, ends the process.
#include <signal.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

int main(void) {
  check("vectors", vectors_work());
  fflush(stdout);
  kill(getpid(), SIGSEGV);
  check("not reached", false);
  return finish("segv_sent");
}
