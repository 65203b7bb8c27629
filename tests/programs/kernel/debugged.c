// A program for a debugger to stop in: SVE code at known labels, by main and by a handler.
#include <signal.h>

#include "program.h"
#include "sve_code.h"

// The sum of four lanes: first, first + 2, first + 4, first + 6.
uint64_t stepped(uint64_t first);
__asm__(
    ".text\n"
    ".arch armv8-a+sve\n"
    ".type stepped, %function\n"
    "stepped:\n"
    "  mov x9, #5\n"
    "  ptrue p0.s, vl4\n"
    "  index z0.s, w0, #2\n"
    "  uaddv d0, p0, z0.s\n"
    ".globl stepped_middle\n"
    "stepped_middle:\n"
    "  fmov x1, d0\n"
    "  add x9, x9, #1\n"
    "  incb x9\n"
    "  mov x0, x1\n"
    ".globl stepped_end\n"
    "stepped_end:\n"
    "  mov x2, x0\n"
    "  ret\n"
    ".size stepped, .-stepped\n");

__attribute__((noipa)) static void handler(int signal) { check("in the handler", signal == SIGUSR1 && vectors_work()); }

int main(void) {
  check("first", stepped(1) == 16);
  check("second", stepped(2) == 20);
  signal(SIGUSR1, handler);
  raise(SIGUSR1);
  check("vectors", vectors_work());
  return finish("debugged");
}
