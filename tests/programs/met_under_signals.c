// Threads go through new code abreast, under signals that are sent to them all the time. The first to trap at a word
// makes a branch of it, while a signal may hold another up that has trapped there too. A SIGILL that is taken for the
// program's would end it.
#include <pthread.h>
#include <signal.h>

#include "program.h"

enum { THREADS = 4, WORDS = 300, SIGNALS = 100 };

// Adds up the doublewords of as many vectors as there are words. Each is a run of its own.
uint64_t count_doublewords(void);
__asm__(
    ".text\n"
    ".arch armv8-a+sve\n"
    ".type count_doublewords, %function\n"
    "count_doublewords:\n"
    "  mov x0, #0\n"
    "  .rept 300\n"  // WORDS
    "  incd x0\n"
    "  mrs x9, tpidr_el0\n"
    "  .endr\n"
    "  ret\n"
    ".size count_doublewords, .-count_doublewords\n");

static pthread_barrier_t start;
static volatile int ended, handled;

static void handler(int signal) {
  (void)signal;
  __atomic_add_fetch(&handled, 1, __ATOMIC_RELAXED);
}

static void* count(void* wanted) {
  bool right = true;
  pthread_barrier_wait(&start);
  do {
    right = count_doublewords() == *(uint64_t*)wanted && right;
  } while (handled < SIGNALS);
  __atomic_add_fetch(&ended, 1, __ATOMIC_RELAXED);
  return right ? wanted : NULL;
}

int main(void) {
  const struct sigaction action = {.sa_handler = handler};
  sigaction(SIGSEGV, &action, NULL);
  sigaction(SIGBUS, &action, NULL);
  uint64_t wanted;
  __asm__("cntd %0" : "=r"(wanted));
  wanted *= WORDS;
  pthread_t threads[THREADS];
  pthread_barrier_init(&start, NULL, THREADS);
  for (int i = 0; i < THREADS; ++i) pthread_create(&threads[i], NULL, count, &wanted);
  for (int round = 0; ended < THREADS; ++round)
    for (int i = 0; i < THREADS; ++i) pthread_kill(threads[i], round % 2 == 0 ? SIGSEGV : SIGBUS);
  bool right = true;
  for (int i = 0; i < THREADS; ++i) {
    void* result;
    pthread_join(threads[i], &result);
    right = right && result;
  }
  check("counts", right);
  return finish("met_under_signals");
}
