// A fault of an emulated load and one of a store: the handler sees every register of the program, and each is the same
// after the instruction has run again. The handler changes nothing but the page.
#include <signal.h>
#include <string.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include "program.h"

struct registers {
  uint64_t x[31], flags, status;
  _Alignas(16) uint64_t v[32][2];
};

// Loads all registers from `before`, runs one instruction on the memory at X0, and stores all to `after`.
void run_load(const struct registers* before, struct registers* after);
void run_store(const struct registers* before, struct registers* after);

__asm__(
    ".text\n"
    ".arch armv8-a+sve\n"
    ".macro with_all_registers name, instruction:vararg\n"
    ".type \\name, %function\n"
    "\\name:\n"
    "  stp x29, x30, [sp, #-176]!\n"
    "  stp x19, x20, [sp, #16]\n"
    "  stp x21, x22, [sp, #32]\n"
    "  stp x23, x24, [sp, #48]\n"
    "  stp x25, x26, [sp, #64]\n"
    "  stp x27, x28, [sp, #80]\n"
    "  stp d8, d9, [sp, #96]\n"
    "  stp d10, d11, [sp, #112]\n"
    "  stp d12, d13, [sp, #128]\n"
    "  stp d14, d15, [sp, #144]\n"
    "  str x1, [sp, #160]\n"
    "  ptrue p0.b\n"
    "  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31\n"
    "  ldr q\\n, [x0, #(272 + 16 * \\n)]\n"
    "  .endr\n"
    "  ldr x1, [x0, #248]\n"
    "  msr nzcv, x1\n"
    "  ldr x1, [x0, #256]\n"
    "  msr fpsr, x1\n"
    "  .irp n, 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30\n"
    "  ldr x\\n, [x0, #(8 * \\n)]\n"
    "  .endr\n"
    "  ldr x0, [x0]\n"
    ".globl \\name\\()_instruction\n"
    "\\name\\()_instruction:\n"
    "  \\instruction\n"
    "  str x0, [sp, #168]\n"
    "  ldr x0, [sp, #160]\n"
    "  .irp n, 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30\n"
    "  str x\\n, [x0, #(8 * \\n)]\n"
    "  .endr\n"
    "  ldr x1, [sp, #168]\n"
    "  str x1, [x0]\n"
    "  mrs x1, nzcv\n"
    "  str x1, [x0, #248]\n"
    "  mrs x1, fpsr\n"
    "  str x1, [x0, #256]\n"
    "  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31\n"
    "  str q\\n, [x0, #(272 + 16 * \\n)]\n"
    "  .endr\n"
    "  ldp x19, x20, [sp, #16]\n"
    "  ldp x21, x22, [sp, #32]\n"
    "  ldp x23, x24, [sp, #48]\n"
    "  ldp x25, x26, [sp, #64]\n"
    "  ldp x27, x28, [sp, #80]\n"
    "  ldp d8, d9, [sp, #96]\n"
    "  ldp d10, d11, [sp, #112]\n"
    "  ldp d12, d13, [sp, #128]\n"
    "  ldp d14, d15, [sp, #144]\n"
    "  ldp x29, x30, [sp], #176\n"
    "  ret\n"
    ".size \\name, .-\\name\n"
    ".endm\n"
    "with_all_registers run_load, ld1b {z5.b}, p0/z, [x0]\n"
    "with_all_registers run_store, st1b {z7.b}, p0, [x0]\n");

extern const unsigned char run_load_instruction[], run_store_instruction[];

static uint8_t* page;
static volatile int faults;
static uint64_t seen_pc;
static struct registers seen;

static void mend(int signal, siginfo_t* info, void* context) {
  (void)signal, (void)info;
  const mcontext_t* const machine = &((ucontext_t*)context)->uc_mcontext;
  ++faults;
  seen_pc = machine->pc;
  memcpy(seen.x, machine->regs, sizeof seen.x);
  seen.flags = machine->pstate & 0xF0000000;
  const struct fpsimd_context* const floating = (const struct fpsimd_context*)machine->__reserved;
  if (floating->head.magic == FPSIMD_MAGIC) {
    seen.status = floating->fpsr;
    memcpy(seen.v, floating->vregs, sizeof seen.v);
  }
  mprotect(page, (size_t)sysconf(_SC_PAGESIZE), PROT_READ | PROT_WRITE);
}

static struct registers numbered_registers(void) {
  struct registers all;
  for (uint64_t n = 0; n < 31; ++n) all.x[n] = 0x1111222200000000 + n;
  for (uint64_t n = 0; n < 32; ++n) {
    all.v[n][0] = 0x3333444400000000 + n;
    all.v[n][1] = 0x5555666600000000 + n;
  }
  all.x[0] = (uintptr_t)page;
  all.flags = 0x90000000;
  all.status = 0x08000011;  // QC, IXC and IOC
  return all;
}

static void check_same(const char* name, const struct registers* a, const struct registers* b) {
  for (size_t n = 0; n < 31; ++n) check_case(name, n, a->x[n] == b->x[n]);
  for (size_t n = 0; n < 32; ++n) check_case(name, 100 + n, a->v[n][0] == b->v[n][0] && a->v[n][1] == b->v[n][1]);
  check(name, a->flags == b->flags && a->status == b->status);
}

int main(void) {
  const size_t page_size = (size_t)sysconf(_SC_PAGESIZE);
  page = mmap(NULL, page_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  struct sigaction action = {.sa_sigaction = mend, .sa_flags = SA_SIGINFO};
  sigaction(SIGSEGV, &action, NULL);
  struct registers before = numbered_registers(), after;

  memset(page, 0x77, page_size);
  mprotect(page, page_size, PROT_NONE);
  run_load(&before, &after);
  check("load: one fault at its instruction", faults == 1 && seen_pc == (uintptr_t)run_load_instruction);
  check_same("load: registers in the handler", &seen, &before);
  before.v[5][0] = before.v[5][1] = 0x7777777777777777;
  check_same("load: registers after it", &after, &before);

  mprotect(page, page_size, PROT_READ);
  run_store(&before, &after);
  check("store: one fault at its instruction", faults == 2 && seen_pc == (uintptr_t)run_store_instruction);
  check_same("store: registers in the handler", &seen, &before);
  check_same("store: registers after it", &after, &before);
  check("store: what is in memory", memcmp(page, before.v[7], sizeof before.v[7]) == 0);
  return finish("fault_registers");
}
