// First-fault and non-fault loads stop at a closed page while SIGSEGV and SIGBUS are blocked: they raise no fault.
#include <signal.h>
#include <string.h>

#include "guarded_pages.h"
#include "program.h"
#include "sve_code.h"

enum { READABLE = 13 };

// Loads all bytes from p that can be loaded, and tells how many they are. Byte i of the memory is i + 1.
#define LOADS(name, instruction)                                               \
  static int name(const uint8_t* p) {                                          \
    uint64_t count;                                                            \
    uint8_t bytes[256];                                                        \
    __asm__ volatile("ptrue p0.b\n setffr\n " instruction                      \
                     " {z0.b}, p0/z, [%[p]]\n rdffr p1.b\n"                    \
                     "cntp %[count], p0, p1.b\n st1b {z0.b}, p1, [%[bytes]]\n" \
                     : [count] "=&r"(count)                                    \
                     : [p] "r"(p), [bytes] "r"(bytes)                          \
                     : "z0", "p0", "p1", "memory");                            \
    for (uint64_t i = 0; i < count; ++i) {                                     \
      if (bytes[i] != i + 1) return -1;                                        \
    }                                                                          \
    return (int)count;                                                         \
  }
LOADS(first_fault, "ldff1b")
LOADS(non_fault, "ldnf1b")

static void load_at_edge(const char* name) {
  uint8_t* const end = end_of_readable(1);
  for (int i = 0; i < READABLE; ++i) end[i - READABLE] = (uint8_t)(i + 1);
  check(name, first_fault(end - READABLE) == READABLE && non_fault(end - READABLE) == READABLE);
  check("  and nothing can be read", non_fault(end) == 0);
}

int main(void) {
  load_at_edge("with no signal blocked");
  sigset_t set;
  sigfillset(&set);
  sigprocmask(SIG_SETMASK, &set, NULL);
  load_at_edge("with all blocked");
  sigemptyset(&set);
  sigaddset(&set, SIGBUS);
  sigprocmask(SIG_SETMASK, &set, NULL);
  load_at_edge("with one blocked");
  check("vectors at the end", vectors_work());
  return finish("first_fault_blocked");
}
