// A program's own SIGILL handler gets undefined words with their code and address, and its flags hold.
#include <signal.h>
#include <string.h>
#include <ucontext.h>

#include "program.h"
#include "sve_code.h"

extern const unsigned char undefined_word[];
static volatile int calls, last_signal, last_code;
static const void* volatile last_address, * volatile last_pc, * volatile last_local;
static sigset_t last_mask;
static volatile bool vectors_in_handler;

void run_undefined_word(void);
__asm__(
    ".text\n"
    ".type run_undefined_word, %function\n"
    "run_undefined_word:\n"
    ".globl undefined_word\n"
    "undefined_word:\n"
    "  .inst 0\n"  // UDF #0
    "  ret\n"
    ".size run_undefined_word, .-run_undefined_word\n");

static void skip(int signal, siginfo_t* info, void* context) {
  char local;
  mcontext_t* const machine = &((ucontext_t*)context)->uc_mcontext;
  ++calls;
  last_signal = signal;
  last_code = info->si_code;
  last_address = info->si_addr;
  last_pc = (const void*)machine->pc;
  last_local = &local;
  sigprocmask(SIG_BLOCK, NULL, &last_mask);
  vectors_in_handler = vectors_work();
  machine->pc += 4;
}

static void handle(int flags, int also_blocked) {
  struct sigaction action = {.sa_sigaction = skip, .sa_flags = SA_SIGINFO | flags};
  if (also_blocked) sigaddset(&action.sa_mask, also_blocked);
  sigaction(SIGILL, &action, NULL);
}

int main(void) {
  handle(0, SIGUSR1);
  run_undefined_word();
  check("one call", calls == 1 && last_signal == SIGILL);
  check("code", last_code == ILL_ILLOPC || last_code == ILL_ILLOPN);  // Linux says the one, qemu the other
  check("address", last_address == undefined_word && last_pc == undefined_word);
  check("mask in the handler",
        sigismember(&last_mask, SIGILL) && sigismember(&last_mask, SIGUSR1) && !sigismember(&last_mask, SIGUSR2));
  check("vectors in the handler", vectors_in_handler);
  check("vectors behind it", vectors_work());
  sigprocmask(SIG_BLOCK, NULL, &last_mask);
  check("mask behind it", !sigismember(&last_mask, SIGILL) && !sigismember(&last_mask, SIGUSR1));

  handle(SA_NODEFER, 0);
  run_undefined_word();
  check("SA_NODEFER", calls == 2 && !sigismember(&last_mask, SIGILL));

  static char stack[65536];
  const stack_t alternate = {.ss_sp = stack, .ss_size = sizeof stack};
  sigaltstack(&alternate, NULL);
  handle(SA_ONSTACK, 0);
  run_undefined_word();
  check("SA_ONSTACK", calls == 3 && (const char*)last_local > stack && (const char*)last_local < stack + sizeof stack);
  check("vectors on the other stack", vectors_in_handler);
  handle(0, 0);
  run_undefined_word();
  check("without SA_ONSTACK", (const char*)last_local < stack || (const char*)last_local > stack + sizeof stack);

  struct sigaction told;
  handle(SA_RESETHAND | SA_RESTART, SIGUSR2);
  sigaction(SIGILL, NULL, &told);
  check("action told back", told.sa_sigaction == skip &&
                                told.sa_flags == (int)(SA_SIGINFO | SA_RESETHAND | SA_RESTART) &&
                                sigismember(&told.sa_mask, SIGUSR2) && !sigismember(&told.sa_mask, SIGUSR1));
  run_undefined_word();
  sigaction(SIGILL, NULL, &told);
  check("SA_RESETHAND", calls == 5 && told.sa_handler == SIG_DFL);
  check("vectors at the end", vectors_work());
  return finish("sigill_handler_kept");
}
