// Handlers that never return: they end their thread, are cancelled, or go on in another context, again and again.
#include <pthread.h>
#include <semaphore.h>
#include <setjmp.h>
#include <signal.h>
#include <string.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

enum { ROUNDS = 300, THREADS = 20 };
static void* page;
static volatile int calls, cleanups;
static ucontext_t behind_fault;
static sigjmp_buf jump_copy;
static sem_t in_handler;

static void clean_up(void* argument) {
  (void)argument;
  if (vectors_work()) ++cleanups;
}

static void end_thread(int signal) {
  (void)signal;
  if (vectors_work()) ++calls;
  pthread_exit((void*)&calls);
}

static void wait_to_be_cancelled(int signal) {
  (void)signal;
  if (vectors_work()) ++calls;
  sem_post(&in_handler);
  for (;;) pause();
}

static void* faulting(void* argument) {
  pthread_cleanup_push(clean_up, NULL);
  loaded_sum(page);
  pthread_cleanup_pop(0);
  return argument;
}

static void* raising(void* argument) {
  pthread_cleanup_push(clean_up, NULL);
  raise(SIGUSR1);
  pthread_cleanup_pop(0);
  return argument;
}

static void handle(int signal, void (*handler)(int), int flags) {
  const struct sigaction action = {.sa_handler = handler, .sa_flags = flags};
  sigaction(signal, &action, NULL);
}

static void threads_end(const char* name, void* (*run)(void*)) {
  calls = cleanups = 0;
  for (int i = 0; i < THREADS; ++i) {
    pthread_t thread;
    void* result = NULL;
    pthread_create(&thread, NULL, run, NULL);
    pthread_join(thread, &result);
    if (result != (void*)&calls) ++failed_checks;
  }
  check(name, calls == THREADS && cleanups == THREADS);
}

static void threads_are_cancelled(const char* name, void* (*run)(void*)) {
  calls = cleanups = 0;
  for (int i = 0; i < THREADS; ++i) {
    pthread_t thread;
    void* result = NULL;
    pthread_create(&thread, NULL, run, NULL);
    sem_wait(&in_handler);
    pthread_cancel(thread);
    pthread_join(thread, &result);
    if (result != PTHREAD_CANCELED) ++failed_checks;
  }
  check(name, calls == THREADS && cleanups == THREADS);
}

static void to_context(int signal) {
  (void)signal;
  if (vectors_work()) ++calls;
  setcontext(&behind_fault);
}

static void to_copied_jump(int signal) {
  (void)signal;
  if (vectors_work()) ++calls;
  siglongjmp(jump_copy, 1);
}

static bool faults_are_blocked(void) {
  sigset_t mask;
  sigprocmask(SIG_BLOCK, NULL, &mask);
  return sigismember(&mask, SIGSEGV) || sigismember(&mask, SIGILL);
}

static void contexts_and_jumps(int signal, void (*cause)(void)) {
  calls = 0;
  handle(signal, to_context, 0);
  getcontext(&behind_fault);
  if (calls < ROUNDS) cause();
  check("another context", calls == ROUNDS && !faults_are_blocked() && vectors_work());

  calls = 0;
  handle(signal, to_copied_jump, 0);
  sigjmp_buf jump;
  if (sigsetjmp(jump, 1) == 0) memcpy(&jump_copy, &jump, sizeof jump);
  if (calls < ROUNDS) cause();
  check("a jump by a copied buffer", calls == ROUNDS && !faults_are_blocked() && vectors_work());
}

static void load(void) { loaded_sum(page); }
static void send(void) { raise(SIGILL); }

int main(void) {
  page = mmap(NULL, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  sem_init(&in_handler, 0, 0);
  handle(SIGSEGV, end_thread, 0);
  handle(SIGUSR1, end_thread, 0);
  threads_end("a fault ends the thread", faulting);
  threads_end("a sent signal ends the thread", raising);
  handle(SIGSEGV, wait_to_be_cancelled, 0);
  handle(SIGUSR1, wait_to_be_cancelled, 0);
  threads_are_cancelled("cancelled in a fault's handler", faulting);
  threads_are_cancelled("cancelled in a sent signal's handler", raising);
  contexts_and_jumps(SIGSEGV, load);
  contexts_and_jumps(SIGILL, send);
  return finish("leave_handler");
}
