// Hundreds of signals of four kinds, sent to threads that compute by SVE, whose handlers compute by SVE too: each
// arrives, and none disturbs a sum. SIGILL comes on top, of which the kernel may drop some: those that are sent while
// an instruction's own SIGILL is on its way, on a processor without SVE.
//   signal_storm [SIGNALS]
#include <pthread.h>
#include <signal.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

enum { THREADS = 2, KINDS = 4 };

static atomic_int sent, arrived, illegal, wrong_in_handler, working;
static atomic_bool stop;

static void handler(int signal) {
  static const uint32_t ones[64] = {[0 ... 63] = 1};
  if (loaded_sum(ones) != vector_words()) ++wrong_in_handler;
  ++*(signal == SIGILL ? &illegal : &arrived);
}

static void* compute(void* argument) {
  bool right = true;
  ++working;
  while (!stop) right = vectors_work() && right;
  *(bool*)argument = right;
  return NULL;
}

int main(int count, char** arguments) {
  const int signals = count > 1 ? atoi(arguments[1]) : 400;
  // Of a signal that waits for a thread already, the kernel drops another: the next is sent when this one has arrived.
  static const int kinds[KINDS + 1] = {SIGUSR1, SIGSEGV, SIGBUS, SIGALRM, SIGILL};
  struct sigaction action = {.sa_handler = handler, .sa_flags = SA_RESTART};
  for (int i = 0; i <= KINDS; ++i) sigaction(kinds[i], &action, NULL);
  pthread_t threads[THREADS];
  bool right[THREADS];
  for (int i = 0; i < THREADS; ++i) pthread_create(&threads[i], NULL, compute, &right[i]);
  while (working < THREADS) usleep(100);
  while (sent < signals) {
    for (int thread = 0; thread < THREADS; ++thread) {
      for (int kind = 0; kind < KINDS; ++kind) sent += pthread_kill(threads[thread], kinds[kind]) == 0;
      pthread_kill(threads[thread], SIGILL);
    }
    while (arrived < sent) usleep(100);
  }
  stop = true;
  for (int i = 0; i < THREADS; ++i) {
    pthread_join(threads[i], NULL);
    check("thread's sums", right[i]);
  }
  check("all signals arrived", arrived == sent);
  check("and of SIGILL some", illegal > 0);
  check("vectors in the handlers", wrong_in_handler == 0);
  return finish("signal_storm");
}
