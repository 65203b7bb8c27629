// A signal that is raised in its own handler waits, or nests if that is asked for, as deep as the stack holds.
#include <pthread.h>
#include <signal.h>

#include "program.h"
#include "sve_code.h"

enum { TIMES = 1500 };
static volatile int calls, depth, deepest, wrong;

static void raise_again(int signal) {
  const bool looks = ++calls % 16 == 0;
  if (++depth > deepest) deepest = depth;
  if (looks && !vectors_work()) ++wrong;
  if (calls < TIMES) raise(signal);
  if (looks && !vectors_work()) ++wrong;
  --depth;
}

static void handle(int signal, int flags) {
  const struct sigaction action = {.sa_handler = raise_again, .sa_flags = flags};
  sigaction(signal, &action, NULL);
}

// In a thread of its own for the size of its stack.
static void* nest(void* argument) {
  static const int signals[] = {SIGSEGV, SIGILL, SIGUSR1};
  for (int i = 0; i < 3; ++i) {
    calls = deepest = 0;
    handle(signals[i], 0);
    raise(signals[i]);
    check("waits for its handler's end", calls == TIMES && deepest == 1);
    calls = deepest = 0;
    handle(signals[i], SA_NODEFER);
    raise(signals[i]);
    check("nests", calls == TIMES && deepest == TIMES);
  }
  check("sums at all depths", wrong == 0);
  return argument;
}

int main(void) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, (size_t)TIMES << 15);
  pthread_t thread;
  pthread_create(&thread, &attributes, nest, NULL);
  pthread_join(thread, NULL);
  return finish("nested_handlers");
}
