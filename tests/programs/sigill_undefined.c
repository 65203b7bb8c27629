// A program that comes to an undefined word, with no handler, dies of SIGILL.
#include "program.h"
#include "sve_code.h"

int main(void) {
  check("vectors", vectors_work());
  fflush(stdout);
  __asm__ volatile(".inst 0");
  check("not reached", false);
  return finish("sigill_undefined");
}
