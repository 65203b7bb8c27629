// The stack switch, with unwind information, so that an exception may pass.
#include "sve/trap/host/call_on_stack.h"

asm(R"(
  .text
  .globl quern_call_on_stack
  .hidden quern_call_on_stack
  .type quern_call_on_stack, %function
quern_call_on_stack:
  .cfi_startproc
  stp x29, x30, [sp, #-16]!
  .cfi_def_cfa_offset 16
  .cfi_offset x29, -16
  .cfi_offset x30, -8
  mov x29, sp
  .cfi_def_cfa_register x29
  mov sp, x4
  blr x3
  mov sp, x29
  .cfi_def_cfa_register sp
  ldp x29, x30, [sp], #16
  .cfi_def_cfa_offset 0
  .cfi_restore x29
  .cfi_restore x30
  ret
  .cfi_endproc
  .size quern_call_on_stack, .-quern_call_on_stack
)");
