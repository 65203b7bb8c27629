// Threads that are cancelled amid SVE code: at a point of cancellation between runs, and asynchronously, within runs
// and in a system call. Their clean-up handlers and the threads after them use SVE.
#include <pthread.h>
#include <stdatomic.h>
#include <unistd.h>

#include "counting_run.h"
#include "program.h"
#include "sve_code.h"

enum { ROUNDS = 100 };

static atomic_int cleaned, working;

static void clean_up(void* argument) {
  (void)argument;
  if (vectors_work()) ++cleaned;
}

static void* compute(void* argument) {
  pthread_cleanup_push(clean_up, NULL);
  for (;;) {
    if (vectors_work()) ++working;
    pthread_testcancel();
  }
  pthread_cleanup_pop(0);
  return argument;
}

static void* wait_for_it(void* argument) {
  pthread_cleanup_push(clean_up, NULL);
  if (vectors_work()) ++working;
  int old;
  pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, &old);
  for (;;) pause();
  pthread_cleanup_pop(0);
  return argument;
}

// Only asynchronous cancellation ends this loop.
static void* count(void* argument) {
  pthread_cleanup_push(clean_up, NULL);
  ++working;
  int old;
  pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, &old);
  while (count_by_run() == COUNTED_WORDS) {}
  pthread_cleanup_pop(0);
  return argument;
}

static bool are_cancelled(void* (*function)(void*)) {
  bool right = true;
  for (int i = 0; i != ROUNDS; ++i) {
    pthread_t thread;
    void* result = NULL;
    const int before = working;
    pthread_create(&thread, NULL, function, NULL);
    while (working == before) sched_yield();
    usleep((useconds_t)i * 20);
    pthread_cancel(thread);
    pthread_join(thread, &result);
    right = right && result == PTHREAD_CANCELED;
  }
  return right;
}

int main(void) {
  check("at a point of cancellation", are_cancelled(compute));
  check("asynchronously, in a system call", are_cancelled(wait_for_it));
  check("asynchronously, within runs", are_cancelled(count));
  check("clean-up handlers", cleaned == 3 * ROUNDS);
  return finish("cancelled_threads");
}
