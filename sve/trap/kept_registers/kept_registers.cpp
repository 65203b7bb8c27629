// The ways from a handler to its trace records, each by a function that keeps all registers: a handler's other code
// then tells which registers it writes, whatever the library does that takes the records. And functions that do
// nothing, in the place of calls of the C library for an error in errno: here that is the application's own.
#include "sve/trap/patch/written_registers.h"

static_assert(quern::keeps_registers_word == 0xD28A2AFF, "the first instruction below");

asm(R"(
  .macro pair move, n, m
  \move x\n, x\m, [sp, #(16 + 8 * \n)]
  .endm
  .macro vector_pair move, n, m
  \move q\n, q\m, [sp, #(160 + 16 * \n)]
  .endm
  .altmacro
  .macro registers move
  .irp n, 0,2,4,6,8,10,12,14
  pair \move, \n, %(\n + 1)
  .endr
  .irp n, 0,2,4,6,8,10,12,14,16,18,20,22,24,26,28,30
  vector_pair \move, \n, %(\n + 1)
  .endr
  .endm

  .macro begin function
  .text
  .globl __wrap_\function
  .hidden __wrap_\function
  .type __wrap_\function, STT_FUNC
__wrap_\function:
  .cfi_startproc
  .endm
  .macro finish function
  .cfi_endproc
  .size __wrap_\function, . - __wrap_\function
  .endm

  .macro keeping function
  begin \function
  movz xzr, #0x5157
  sub sp, sp, #672
  .cfi_def_cfa_offset 672
  stp x29, x30, [sp]
  .cfi_offset x29, -672
  .cfi_offset x30, -664
  mov x29, sp
  registers stp
  str x18, [sp, #144]
  bl __real_\function
  str x0, [sp, #16]
  ldr x18, [sp, #144]
  registers ldp
  ldp x29, x30, [sp]
  add sp, sp, #672
  .cfi_restore x29
  .cfi_restore x30
  .cfi_def_cfa_offset 0
  ret
  finish \function
  .endm

  .macro nothing function
  begin \function
  ret
  finish \function
  .endm

  keeping _ZN5quern10trace_runsERKNS_13traced_accessEm
  keeping _ZN5quern11trace_lanesERKNS_13traced_accessEPKm
  keeping _ZN5quern19switch_trace_regionEb
  keeping _Z16addr_is_readableIcEbPVT_
  nothing _ZN5quern11report_rootEj
  nothing _ZN5quern11report_rootEm
  .noaltmacro
  .purgem pair
  .purgem vector_pair
  .purgem registers
  .purgem begin
  .purgem finish
  .purgem keeping
  .purgem nothing
)");
