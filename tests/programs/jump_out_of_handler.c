// Long jumps out of handlers, of faults of emulated loads and of sent signals, again and again; the mask comes back.
#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>

#include "program.h"
#include "sve_code.h"

enum { ROUNDS = 3000 };
static sigjmp_buf back;
static jmp_buf plain_back;
static volatile int jumps;

static void jump(int signal) {
  (void)signal;
  if (!vectors_work()) ++failed_checks;
  ++jumps;
  siglongjmp(back, 1);
}

static void jump_plain(int signal) {
  (void)signal;
  if (!vectors_work()) ++failed_checks;
  ++jumps;
  longjmp(plain_back, 1);
}

static bool mask_is_empty(void) {
  sigset_t mask;
  sigprocmask(SIG_BLOCK, NULL, &mask);
  for (int signal = 1; signal < 32; ++signal) {
    if (sigismember(&mask, signal)) return false;
  }
  return true;
}

int main(void) {
  void* const page = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  struct sigaction action = {.sa_handler = jump};
  sigfillset(&action.sa_mask);
  sigaction(SIGSEGV, &action, NULL);
  sigaction(SIGUSR1, &action, NULL);
  for (volatile int i = 0; i < ROUNDS; ++i) {
    if (sigsetjmp(back, 1) == 0) loaded_sum(page);
  }
  check("out of faults", jumps == ROUNDS);
  check("with the mask brought back", mask_is_empty());
  for (volatile int i = 0; i < ROUNDS; ++i) {
    if (sigsetjmp(back, 1) == 0) raise(SIGUSR1);
  }
  check("out of sent signals", jumps == 2 * ROUNDS && mask_is_empty());
  action.sa_handler = jump_plain;
  action.sa_flags = SA_NODEFER;
  sigemptyset(&action.sa_mask);
  sigaction(SIGSEGV, &action, NULL);
  for (volatile int i = 0; i < ROUNDS; ++i) {
    if (setjmp(plain_back) == 0) loaded_sum(page);
  }
  check("without a saved mask", jumps == 3 * ROUNDS && mask_is_empty());
  // A jump without a saved mask leaves the signal blocked, as the handler was.
  action.sa_flags = 0;
  sigaction(SIGSEGV, &action, NULL);
  if (setjmp(plain_back) == 0) loaded_sum(page);
  sigset_t mask;
  sigprocmask(SIG_BLOCK, NULL, &mask);
  check("which leaves the signal blocked", sigismember(&mask, SIGSEGV) == 1);
  check("vectors at the end", vectors_work());
  return finish("jump_out_of_handler");
}
