// A run of many SVE words, next to each other, at each of which the registers tell how many are done.
#ifndef QUERN_TESTS_COUNTING_RUN_H
#define QUERN_TESTS_COUNTING_RUN_H

#include <stdbool.h>
#include <stdint.h>
#include <ucontext.h>

enum { COUNTED_WORDS = 12 };

#ifdef __cplusplus
extern "C" {
#endif

// The first SVE word, the first and the fifth that count, behind the last, and behind the function.
extern const unsigned char counting_start[], counting_run[], counting_run_middle[], counting_run_end[], counted[];

// Counts the words in x0, times x2. It has a frame, for those who walk the stack.
uint64_t count_by_run(void);

// The same, from the fifth word on.
uint64_t count_from_within(void);

#ifdef __cplusplus
}
#endif

__asm__(
    ".text\n"
    ".arch armv8-a+sve\n"
    ".balign 64\n"
    ".type count_by_run, %function\n"
    "count_by_run:\n"
    "  .cfi_startproc\n"
    "  stp x29, x30, [sp, #-16]!\n"
    "  .cfi_def_cfa_offset 16\n"
    "  .cfi_offset x29, -16\n"
    "  .cfi_offset x30, -8\n"
    "  mov x29, sp\n"
    ".globl counting_start\n"
    "counting_start:\n"
    "  mov z0.d, #0\n"
    "  ptrue p0.d\n"
    "  cntd x2\n"
    "  mov x0, #0\n"
    ".globl counting_run\n"
    "counting_run:\n"
    "  incd x0\n  sqincd x0\n  incd x0\n  incd x0\n"
    ".globl counting_run_middle\n"
    "counting_run_middle:\n"
    "  uqincd x0\n  sqincd x0\n"
    "  sqincd x0\n  incd x0\n  sqincd x0\n  uqincd x0\n  incd x0\n  incd x0\n"
    ".globl counting_run_end\n"
    "counting_run_end:\n"
    "  b 0f\n"
    "0:\n"
    "  udiv x0, x0, x2\n"
    "  ldp x29, x30, [sp], #16\n"
    "  .cfi_restore x29\n"
    "  .cfi_restore x30\n"
    "  .cfi_def_cfa_offset 0\n"
    "  ret\n"
    "  .cfi_endproc\n"
    ".globl counted\n"
    "counted:\n"
    ".size count_by_run, .-count_by_run\n"
    ".type count_from_within, %function\n"
    "count_from_within:\n"
    "  .cfi_startproc\n"
    "  stp x29, x30, [sp, #-16]!\n"
    "  mov x29, sp\n"
    "  cntd x2\n"
    "  mov x0, #0\n"
    "  b counting_run_middle\n"
    "  .cfi_endproc\n"
    ".size count_from_within, .-count_from_within\n");

// Whether a signal has found the thread in the function, and so within the run more often than not. (An emulator of a
// processor with SVE lets signals in behind branches only.)
static inline bool is_counting(const ucontext_t* context) {
  const uintptr_t pc = context->uc_mcontext.pc;
  return pc >= (uintptr_t)count_by_run && pc < (uintptr_t)counted;
}

#endif
