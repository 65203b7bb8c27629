// A fault of an emulated load, with no handler, ends the process with SIGSEGV.
#include "program.h"
#include "sve_code.h"

int main(void) {
  check("vectors", vectors_work());
  fflush(stdout);
  loaded_sum(NULL);
  check("not reached", false);
  return finish("segv_default");
}
