// Loads that fault midway, whose handler goes on behind them: their destination and FFR are as before.
#include <signal.h>
#include <ucontext.h>

#include "guarded_pages.h"
#include "program.h"

enum { VECTOR_BYTES = 256, REGISTERS = 3 };
typedef struct {
  uint8_t z[REGISTERS][VECTOR_BYTES];
  uint8_t ffr[VECTOR_BYTES / 8];
} registers;

// Runs the load of Z0 and those behind it at `from`, or at `from` and the offsets in Z3, with P0 as most lanes and P1
// as all; tells what was in the registers before and after.
#define LOAD(name, instruction)                                                                     \
  static void name(const void* from, const int32_t* offsets, registers* before, registers* after) { \
    __asm__ volatile(                                                                               \
        "index z0.b, #3, #5; index z1.b, #7, #9; index z2.b, #11, #13; ldr z3, [%[offsets]];"       \
        "ptrue p0.s, mul3; ptrue p1.b; ptrue p2.b, vl16; wrffr p2.b;"                               \
        "str z0, [%[before]]; str z1, [%[before], #1, mul vl]; str z2, [%[before], #2, mul vl];"    \
        "rdffr p3.b; str p3, [%[before], #24, mul vl];" instruction                                 \
        "; str z0, [%[after]]; str z1, [%[after], #1, mul vl]; str z2, [%[after], #2, mul vl];"     \
        "rdffr p3.b; str p3, [%[after], #24, mul vl]"                                               \
        :                                                                                           \
        : [from] "r"(from), [offsets] "r"(offsets), [before] "r"(before), [after] "r"(after)        \
        : "z0", "z1", "z2", "z3", "p0", "p1", "p2", "p3", "memory");                                \
  }
LOAD(all_lanes, "ld1w {z0.s}, p1/z, [%[from]]")
LOAD(some_lanes, "ld1w {z0.s}, p0/z, [%[from]]")
LOAD(structures, "ld3w {z0.s, z1.s, z2.s}, p1/z, [%[from]]")
LOAD(some_structures, "ld3w {z0.s, z1.s, z2.s}, p0/z, [%[from]]")
LOAD(gathered, "ld1w {z0.s}, p1/z, [%[from], z3.s, sxtw]")
LOAD(gathered_in_place, "mov z0.d, z3.d; str z0, [%[before]]; ld1w {z0.s}, p1/z, [%[from], z0.s, sxtw]")

static volatile int faults;

static void on_fault(int signal, siginfo_t* info, void* context) {
  (void)signal, (void)info;
  ++faults;
  ((ucontext_t*)context)->uc_mcontext.pc += 4;
}

static const struct load {
  const char* name;
  void (*run)(const void*, const int32_t*, registers*, registers*);
} loads[] = {{"all lanes", all_lanes},   {"some lanes", some_lanes},
             {"structures", structures}, {"some structures", some_structures},
             {"gathered", gathered},     {"gathered in place", gathered_in_place}};

int main(void) {
  const uint8_t* const end = end_of_readable(2);
  struct sigaction action = {.sa_sigaction = on_fault, .sa_flags = SA_SIGINFO};
  sigaction(SIGSEGV, &action, NULL);
  // Two words lie before the end, the others behind.
  int32_t offsets[VECTOR_BYTES / 4];
  for (int32_t i = 0; i < VECTOR_BYTES / 4; ++i) offsets[i] = 4 * i;

  for (size_t i = 0; i < sizeof loads / sizeof *loads; ++i) {
    registers before = {0}, after = {0};
    faults = 0;
    loads[i].run(end - 8, offsets, &before, &after);
    check(loads[i].name, faults == 1 && same_bytes(&before, &after, sizeof before));
  }
  return finish("load_skipped");
}
