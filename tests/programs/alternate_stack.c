// Handlers on an alternate signal stack: of a fault of an emulated load, and of an overflow of the stack.
#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include "program.h"
#include "sve_code.h"

enum { STACK_BYTES = 65536 };
static char stack[STACK_BYTES];
static void* page;
static sigjmp_buf back;
static volatile bool on_stack, told_on_stack, vectors;

static void look(void) {
  char local;
  stack_t told;
  on_stack = &local > stack && &local < stack + STACK_BYTES;
  sigaltstack(NULL, &told);
  told_on_stack = told.ss_flags == SS_ONSTACK && told.ss_sp == stack;
  vectors = vectors_work();
}

static void mend(int signal) {
  (void)signal;
  look();
  mprotect(page, 4096, PROT_READ | PROT_WRITE);
}

static void leave(int signal) {
  (void)signal;
  look();
  siglongjmp(back, 1);
}

// Each call takes more of the stack. Links to the caller's array, so that it stays a recursion.
struct numbers {
  const struct numbers* outer;
  uint32_t values[254];
};

static SCALAR uint32_t recurse(uint32_t depth, const struct numbers* outer) {
  struct numbers mine = {.outer = outer};
  for (uint32_t i = 0; i < 254; ++i) mine.values[i] = depth + i;
  __asm__ volatile("" : : "r"(&mine) : "memory");
  return depth == 1 << 20 ? 0 : recurse(depth + 1, &mine) + mine.values[depth % 254];
}

int main(void) {
  page = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  const stack_t alternate = {.ss_sp = stack, .ss_size = sizeof stack};
  sigaltstack(&alternate, NULL);
  struct sigaction action = {.sa_handler = mend, .sa_flags = SA_ONSTACK};
  sigaction(SIGSEGV, &action, NULL);
  check("load mended", loaded_sum(page) == 0);
  check("on the stack", on_stack && told_on_stack && vectors);

  action.sa_handler = leave;
  sigaction(SIGSEGV, &action, NULL);
  on_stack = told_on_stack = vectors = false;
  if (sigsetjmp(back, 1) == 0) recurse(0, NULL);
  check("stack overflow", on_stack && told_on_stack && vectors);
  check("vectors at the end", vectors_work());
  return finish("alternate_stack");
}
