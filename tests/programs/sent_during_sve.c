// SIGSEGV, SIGILL and SIGBUS that another thread sends all the time, to threads in the middle of SVE code that stores,
// gathers and computes; the handlers run SVE code too, and nobody's sums go wrong.
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

enum { WORKERS = 3, SIGNALS = 300, WORDS = 500 };
static volatile int handled, wrong_in_handlers, wrong_in_workers;
static volatile bool over;

static void handler(int signal) {
  (void)signal;
  if (!vectors_work()) __atomic_add_fetch(&wrong_in_handlers, 1, __ATOMIC_RELAXED);
  __atomic_add_fetch(&handled, 1, __ATOMIC_RELAXED);
}

// A permutation by a gather, and a scatter of it back.
VECTOR static void permute(const uint32_t* from, const uint32_t* places, uint32_t* to) {
  for (size_t i = 0; i < WORDS; ++i) to[i] = from[places[i]];
}
VECTOR static void permute_back(const uint32_t* from, const uint32_t* places, uint32_t* to) {
  for (size_t i = 0; i < WORDS; ++i) to[places[i]] = from[i];
}

static void* worker(void* argument) {
  uint32_t from[WORDS], places[WORDS], to[WORDS], back[WORDS];
  for (uint32_t i = 0; i < WORDS; ++i) from[i] = i * i, places[i] = i * 7 % WORDS;
  while (!over) {
    permute(from, places, to);
    permute_back(to, places, back);
    if (!same_bytes(from, back, sizeof from) || !vectors_work())
      __atomic_add_fetch(&wrong_in_workers, 1, __ATOMIC_RELAXED);
  }
  return argument;
}

int main(void) {
  static const int signals[] = {SIGSEGV, SIGILL, SIGBUS};
  struct sigaction action = {.sa_handler = handler, .sa_flags = SA_RESTART};
  for (int i = 0; i < 3; ++i) sigaction(signals[i], &action, NULL);
  pthread_t threads[WORKERS];
  for (int i = 0; i < WORKERS; ++i) pthread_create(&threads[i], NULL, worker, NULL);
  for (int round = 0; handled < SIGNALS; ++round) {
    for (int i = 0; i < WORKERS; ++i) pthread_kill(threads[i], signals[(round + i) % 3]);
    usleep(2000);
  }
  over = true;
  for (int i = 0; i < WORKERS; ++i) pthread_join(threads[i], NULL);
  check("sums of the handlers", wrong_in_handlers == 0);
  check("sums of the threads", wrong_in_workers == 0);
  return finish("sent_during_sve");
}
