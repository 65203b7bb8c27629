// A program's own SIGSEGV and SIGBUS handlers get its own faults: of a plain null pointer, and of an emulated load,
// which the handler mends and which then runs again.
#include <setjmp.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

static sigjmp_buf back;
static uint8_t* page;
static uint8_t* volatile fault_address, * volatile fault_pc;
static volatile uint64_t fault_base, fault_x9;
static volatile int faults, fault_code, fault_signal;

static void note(int signal, siginfo_t* info, const ucontext_t* context) {
  ++faults;
  fault_signal = signal;
  fault_code = info->si_code;
  fault_address = info->si_addr;
  fault_pc = (uint8_t*)context->uc_mcontext.pc;
  fault_base = context->uc_mcontext.regs[0];
  fault_x9 = context->uc_mcontext.regs[9];
}

static void leave(int signal, siginfo_t* info, void* context) {
  note(signal, info, context);
  siglongjmp(back, 1);
}

static void mend(int signal, siginfo_t* info, void* context) {
  note(signal, info, context);
  mprotect(page, (size_t)sysconf(_SC_PAGESIZE), PROT_READ | PROT_WRITE);
  for (int i = 0; i < 256; ++i) ((uint32_t*)page)[i] = 3;
}

// The handler changes the address in place of the page.
static uint32_t elsewhere[64];
static void redirect(int signal, siginfo_t* info, void* context) {
  note(signal, info, context);
  ((ucontext_t*)context)->uc_mcontext.regs[0] = (uintptr_t)elsewhere;
}

static void handle_faults(void (*handler)(int, siginfo_t*, void*)) {
  struct sigaction action = {.sa_sigaction = handler, .sa_flags = SA_SIGINFO};
  sigaction(SIGSEGV, &action, NULL);
  sigaction(SIGBUS, &action, NULL);
}

// A page of a file that is shorter than it, whose touch is a SIGBUS.
static void* page_behind_file(void) {
  char name[] = "/tmp/quern_program_XXXXXX";
  const int file = mkstemp(name);
  unlink(name);
  return mmap(NULL, (size_t)sysconf(_SC_PAGESIZE), PROT_READ, MAP_SHARED, file, 0);
}

// A fault whose signal frame does not lie where the last one lay.
static SCALAR void fault_far_down(void) {
  volatile char room[20000];
  room[0] = 1;
  *(volatile int*)0 = room[0];
}

int main(void) {
  const size_t page_size = (size_t)sysconf(_SC_PAGESIZE);
  page = mmap(NULL, page_size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);

  handle_faults(leave);
  check("vectors", vectors_work());
  if (sigsetjmp(back, 1) == 0) *(volatile int*)0 = 1;
  check("null pointer", faults == 1 && fault_signal == SIGSEGV && fault_code == SEGV_MAPERR && fault_address == NULL);
  check("vectors after it", vectors_work());

  handle_faults(mend);
  check("mended load", loaded_sum(page + 64) == 3 * vector_words());
  check("one fault", faults == 2 && fault_signal == SIGSEGV && fault_code == SEGV_ACCERR);
  check("at its address", fault_address == page + 64);
  check("at its instruction", fault_pc == loaded_sum_load);
  check("with the program's registers", fault_base == (uintptr_t)page + 64 && fault_x9 == 0x1234);

  handle_faults(redirect);
  for (int i = 0; i < 64; ++i) elsewhere[i] = 5;
  mprotect(page, page_size, PROT_NONE);
  check("redirected load", loaded_sum(page) == 5 * vector_words());
  check("one more fault", faults == 3 && fault_address == page);

  handle_faults(leave);
  if (sigsetjmp(back, 1) == 0) loaded_sum(page);
  if (sigsetjmp(back, 1) == 0) fault_far_down();
  check("null pointer after it", faults == 5 && fault_pc != loaded_sum_load && fault_address == NULL);
  if (sigsetjmp(back, 1) == 0) loaded_sum(page);
  check("left load", faults == 6 && fault_pc == loaded_sum_load);
  uint8_t* const behind = page_behind_file();
  if (sigsetjmp(back, 1) == 0) loaded_sum(behind);
  check("bus error", faults == 7 && fault_signal == SIGBUS && fault_address == behind);
  check("vectors at the end", vectors_work());
  return finish("segv_handler_kept");
}
