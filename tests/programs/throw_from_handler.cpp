// Exceptions thrown from signal handlers, of faults of plain and of emulated loads, of sent signals, and of those that
// arrive within runs, are caught by the code that was interrupted, with the objects in between destroyed.
#include <sys/mman.h>
#include <sys/time.h>
#include <csignal>

#include "counting_run.h"
#include "program.h"
#include "sve_code.h"

namespace {

constexpr int rounds = 300;
int destroyed;
void* page;

struct fault {
  int signal;
};

void throw_fault(int signal) {
  if (!vectors_work()) ++failed_checks;
  throw fault{signal};
}

void throw_if_counting(int signal, siginfo_t*, void* context) {
  if (is_counting(static_cast<const ucontext_t*>(context))) throw_fault(signal);
}

struct object {
  ~object() { ++destroyed; }
};

__attribute__((noipa)) void load() { asm volatile("ldrb wzr, [%0]" : : "r"(page) : "memory"); }

__attribute__((noipa)) void load_vector() {
  asm volatile("ptrue p0.s\n  ld1w {z0.s}, p0/z, [%0]" : : "r"(page) : "z0", "p0", "memory");
}

__attribute__((noipa)) void send() { raise(SIGUSR1); }

__attribute__((noipa)) void count() {
  while (count_by_run() == COUNTED_WORDS) {}
}

__attribute__((noipa)) void call(void (*cause)()) {
  const object in_between;
  cause();
}

// An exception leaves the mask as the handler has it, so nothing may be blocked there.
bool is_caught(void (*cause)(), int signal) {
  destroyed = 0;
  int caught = 0;
  for (int i = 0; i < rounds; ++i) {
    try {
      const object here;
      call(cause);
    } catch (const fault& thrown) {
      caught += thrown.signal == signal && vectors_work();
    }
  }
  return caught == rounds && destroyed == 2 * rounds;
}

}  // namespace

int main() {
  page = mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  struct sigaction action {};
  action.sa_handler = throw_fault;
  action.sa_flags = SA_NODEFER;
  sigaction(SIGSEGV, &action, nullptr);
  sigaction(SIGUSR1, &action, nullptr);
  check("of a load", is_caught(load, SIGSEGV));
  check("of an emulated load", is_caught(load_vector, SIGSEGV));
  check("of a sent signal", is_caught(send, SIGUSR1));
  action.sa_sigaction = throw_if_counting;
  action.sa_flags |= SA_SIGINFO;
  sigaction(SIGALRM, &action, nullptr);
  const itimerval often{{0, 1000}, {0, 1000}}, never{};
  setitimer(ITIMER_REAL, &often, nullptr);
  check("of a signal within a run", is_caught(count, SIGALRM));
  setitimer(ITIMER_REAL, &never, nullptr);
  return finish("throw_from_handler");
}
