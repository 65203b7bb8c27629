// An alternate signal stack of the size that the system names, and a little for the handler's own use, holds a handler
// of SVE code.
#include <signal.h>
#include <sys/auxv.h>
#include <sys/mman.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

enum { OWN_BYTES = 4096 };
static uint8_t* lowest;
static size_t size;
static volatile int calls;
static void* page;

static void handler(int signal) {
  const uint8_t* const here = (const uint8_t*)__builtin_frame_address(0);
  if (vectors_work() && here > lowest && here < lowest + size) ++calls;
  if (signal == SIGSEGV) mprotect(page, (size_t)sysconf(_SC_PAGESIZE), PROT_READ);
}

// A stack that ends in a page that can't be touched.
static void use_stack_of(size_t bytes) {
  const size_t page_bytes = (size_t)sysconf(_SC_PAGESIZE);
  const size_t pages = (bytes + page_bytes - 1) / page_bytes;
  uint8_t* const base =
      (uint8_t*)mmap(NULL, (pages + 1) * page_bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  mprotect(base, page_bytes, PROT_NONE);
  lowest = base + page_bytes;
  size = bytes;
  const stack_t stack = {.ss_sp = lowest, .ss_size = bytes};
  if (sigaltstack(&stack, NULL) != 0) ++failed_checks;
}

int main(void) {
  const size_t least = (size_t)sysconf(_SC_MINSIGSTKSZ);
  check("the vector tells the same", getauxval(AT_MINSIGSTKSZ) == least);
  check("there is room for the vectors", least > 34 * 4 * vector_words());
  check("the size to be used is more", (size_t)sysconf(_SC_SIGSTKSZ) >= 2 * least);
  use_stack_of(least + OWN_BYTES);
  page = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  const struct sigaction action = {.sa_handler = handler, .sa_flags = SA_ONSTACK};
  sigaction(SIGUSR1, &action, NULL);
  sigaction(SIGSEGV, &action, NULL);
  raise(SIGUSR1);
  check("a sent signal's handler", calls == 1);
  check("a fault's handler", loaded_sum(page) == 0 && calls == 2);
  return finish("signal_stack_size");
}
