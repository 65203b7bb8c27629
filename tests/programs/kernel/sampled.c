// A profiler that samples by SIGPROF finds the program where it computes, not in what carries its instructions out.
#include <signal.h>
#include <sys/time.h>
#include <ucontext.h>

#include "program.h"
#include "sve_code.h"

enum { SAMPLES = 200 };

static volatile int samples, in_loop, in_program;

// Adds up lanes for a time; its place is known.
uint64_t sampled_loop(uint64_t rounds);
extern const char sampled_loop_end[], __executable_start[], etext[];
__asm__(
    ".text\n"
    ".arch armv8-a+sve\n"
    ".type sampled_loop, %function\n"
    "sampled_loop:\n"
    "  ptrue p0.s\n"
    "  mov z0.s, #0\n"
    "0:\n"
    "  add z0.s, z0.s, #1\n"
    "  subs x0, x0, #1\n"
    "  b.ne 0b\n"
    "  uaddv d0, p0, z0.s\n"
    "  fmov x0, d0\n"
    "  ret\n"
    ".globl sampled_loop_end\n"
    "sampled_loop_end:\n"
    ".size sampled_loop, .-sampled_loop\n");

static void sample(int signal, siginfo_t* info, void* context) {
  (void)signal;
  (void)info;
  const uintptr_t pc = ((const ucontext_t*)context)->uc_mcontext.pc;
  ++samples;
  in_loop += pc >= (uintptr_t)sampled_loop && pc < (uintptr_t)sampled_loop_end;
  in_program += pc >= (uintptr_t)__executable_start && pc < (uintptr_t)etext;
}

int main(void) {
  const struct sigaction action = {.sa_sigaction = sample, .sa_flags = SA_SIGINFO | SA_RESTART};
  sigaction(SIGPROF, &action, NULL);
  const struct itimerval often = {.it_interval = {.tv_usec = 4000}, .it_value = {.tv_usec = 4000}};
  setitimer(ITIMER_PROF, &often, NULL);
  bool right = true;
  while (samples < SAMPLES) right = sampled_loop(1000) == 1000 * vector_words() && right;
  const struct itimerval never = {0};
  setitimer(ITIMER_PROF, &never, NULL);
  fprintf(stderr, "%d samples, %d in the program, %d in the loop\n", samples, in_program, in_loop);
  check("sums", right);
  check("in the program", in_program >= samples * 95 / 100);
  check("in its loop", in_loop >= samples * 90 / 100);
  return finish("sampled");
}
