// backtrace() in signal handlers: of one that arrives within a run, and of the fault of an emulated load. Each finds
// the interrupted place and its callers.
#include <execinfo.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/time.h>

#include "counting_run.h"
#include "program.h"
#include "sve_code.h"

enum { FOUND = 100, FRAMES = 64 };

#define CALLED __attribute__((noipa))

// Where the two functions above the interrupted one are to go on.
static void *in_outer, *in_main;
static volatile int found, missed;
static unsigned char* page;

static bool has(void* const* addresses, int count, const void* wanted) {
  for (int i = 0; i != count; ++i)
    if (addresses[i] == wanted) return true;
  return false;
}

static void look(int signal, siginfo_t* info, void* context) {
  (void)info;
  const ucontext_t* const interrupted = context;
  if (found + missed == FOUND || (signal == SIGALRM && !is_counting(interrupted))) return;
  void* addresses[FRAMES];
  const int count = backtrace(addresses, FRAMES);
  const void* const pc = (const void*)(uintptr_t)interrupted->uc_mcontext.pc;
  const bool right = has(addresses, count, pc) && has(addresses, count, in_outer) && has(addresses, count, in_main);
  if (right) {
    ++found;
  } else {
    ++missed;
  }
  if (signal == SIGSEGV) mprotect(page, 4096, PROT_READ);
}

static CALLED void count_until_found(void) {
  in_outer = __builtin_return_address(0);
  while (found + missed < FOUND) count_by_run();
}

static CALLED void load_vector(void) {
  in_outer = __builtin_return_address(0);
  __asm__ volatile("ptrue p0.s\n ld1w {z0.s}, p0/z, [%0]" : : "r"(page) : "z0", "p0", "memory");
}

static CALLED void outer(void (*inner)(void)) {
  in_main = __builtin_return_address(0);
  inner();
  __asm__ volatile("" : : : "memory");  // the call above is no jump
}

static bool is_found(int times) {
  const bool right = found == times && missed == 0;
  found = missed = 0;
  return right;
}

int main(void) {
  void* first[1];
  backtrace(first, 1);  // which loads a library, as none may in a handler
  const struct sigaction action = {.sa_sigaction = look, .sa_flags = SA_SIGINFO | SA_RESTART};
  sigaction(SIGALRM, &action, NULL);
  sigaction(SIGSEGV, &action, NULL);

  const struct itimerval often = {{0, 1000}, {0, 1000}}, never = {{0, 0}, {0, 0}};
  setitimer(ITIMER_REAL, &often, NULL);
  outer(count_until_found);
  setitimer(ITIMER_REAL, &never, NULL);
  check("within runs", is_found(FOUND));

  page = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  for (int i = 0; i != FOUND; ++i) {
    mprotect(page, 4096, PROT_NONE);
    outer(load_vector);
  }
  check("of faults of emulated loads", is_found(FOUND));
  return finish("backtraces");
}
