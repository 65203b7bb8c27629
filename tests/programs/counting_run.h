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

extern const unsigned char counting_run[], counting_run_end[];

// Counts the words in x0, times x2. It has a frame, for those who walk the stack.
uint64_t count_by_run(void);

// The same, from the run's fifth word on.
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
    "  mov z0.d, #0\n"
    "  ptrue p0.d\n"
    "  cntd x2\n"
    "  mov x0, #0\n"
    ".globl counting_run\n"
    "counting_run:\n"
    "  incd x0\n  sqincd x0\n  incd x0\n  incd x0\n"
    "0:\n"
    "  uqincd x0\n  sqincd x0\n"
    "  sqincd x0\n  incd x0\n  sqincd x0\n  uqincd x0\n  incd x0\n  incd x0\n"
    ".globl counting_run_end\n"
    "counting_run_end:\n"
    "  udiv x0, x0, x2\n"
    "  ldp x29, x30, [sp], #16\n"
    "  .cfi_restore x29\n"
    "  .cfi_restore x30\n"
    "  .cfi_def_cfa_offset 0\n"
    "  ret\n"
    "  .cfi_endproc\n"
    ".size count_by_run, .-count_by_run\n"
    ".type count_from_within, %function\n"
    "count_from_within:\n"
    "  .cfi_startproc\n"
    "  stp x29, x30, [sp, #-16]!\n"
    "  mov x29, sp\n"
    "  cntd x2\n"
    "  mov x0, #0\n"
    "  b 0b\n"
    "  .cfi_endproc\n"
    ".size count_from_within, .-count_from_within\n");

// Whether a signal has found the thread within the run.
static inline bool is_in_counting_run(const ucontext_t* context) {
  const uintptr_t pc = context->uc_mcontext.pc;
  return pc > (uintptr_t)counting_run && pc < (uintptr_t)counting_run_end;
}

#endif
