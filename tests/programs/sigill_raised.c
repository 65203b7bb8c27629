// A program that raises SIGILL on purpose dies of it.
#include <signal.h>

#include "program.h"
#include "sve_code.h"

int main(void) {
  check("vectors", vectors_work());
  fflush(stdout);
  raise(SIGILL);
  check("not reached", false);
  return finish("sigill_raised");
}
