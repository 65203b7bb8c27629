// SVE code runs while all signals are blocked: by the mask, in a handler with a full sa_mask, in a new thread; and the
// masks are told back as they were asked for.
#include <pthread.h>
#include <signal.h>
#include <ucontext.h>

#include "program.h"
#include "sve_code.h"

static sigset_t in_handler, in_thread;
static volatile bool handler_worked;

// Signals 32 and 33 are the C library's own, 9 and 19 can't be blocked, and qemu lacks the last two.
static bool is_full(const sigset_t* set) {
  for (int signal = 1; signal <= 62; ++signal) {
    const bool never = signal == SIGKILL || signal == SIGSTOP || signal == 32 || signal == 33;
    if (!never && !sigismember(set, signal)) return false;
  }
  return true;
}

static bool is_only(const sigset_t* set, int wanted) {
  for (int signal = 1; signal <= 64; ++signal) {
    if (sigismember(set, signal) != (signal == wanted)) return false;
  }
  return true;
}

static void handler(int signal) {
  (void)signal;
  handler_worked = vectors_work();
  sigprocmask(SIG_BLOCK, NULL, &in_handler);
}

// Finds SIGSEGV blocked where it was interrupted, and has SIGBUS blocked there in its place.
static void exchange(int signal, siginfo_t* info, void* context) {
  (void)signal;
  (void)info;
  sigset_t* const mask = &((ucontext_t*)context)->uc_sigmask;
  in_handler = *mask;
  sigdelset(mask, SIGSEGV);
  sigaddset(mask, SIGBUS);
}

static void* thread(void* argument) {
  (void)argument;
  pthread_sigmask(SIG_BLOCK, NULL, &in_thread);
  return vectors_work() ? argument : NULL;
}

static bool thread_works(void) {
  pthread_t id;
  int token;
  void* result = NULL;
  return pthread_create(&id, NULL, thread, &token) == 0 && pthread_join(id, &result) == 0 && result == &token;
}

int main(void) {
  sigset_t full, none, one, old;
  sigfillset(&full);
  sigemptyset(&none);
  sigemptyset(&one);
  sigaddset(&one, SIGBUS);

  sigprocmask(SIG_SETMASK, &full, &old);
  check("was empty", is_only(&old, 0));
  check("vectors with all blocked", vectors_work());
  sigprocmask(SIG_UNBLOCK, &one, &old);
  check("told full", is_full(&old));
  check("thread inherits", thread_works() && !sigismember(&in_thread, SIGBUS) && sigismember(&in_thread, SIGSEGV) &&
                               sigismember(&in_thread, SIGILL) && sigismember(&in_thread, SIGUSR1));
  sigprocmask(SIG_SETMASK, &full, NULL);
  pthread_sigmask(SIG_SETMASK, &one, &old);
  check("told full again", is_full(&old));
  pthread_sigmask(SIG_BLOCK, NULL, &old);
  check("told one", is_only(&old, SIGBUS));
  pthread_sigmask(SIG_SETMASK, &none, NULL);

  struct sigaction action = {.sa_handler = handler}, told;
  sigfillset(&action.sa_mask);
  sigaction(SIGUSR1, &action, NULL);
  sigaction(SIGUSR1, NULL, &told);
  check("sa_mask told full", is_full(&told.sa_mask) && told.sa_handler == handler && told.sa_flags == action.sa_flags);
  raise(SIGUSR1);
  check("vectors in the handler", handler_worked);
  check("mask in the handler full", is_full(&in_handler));
  sigprocmask(SIG_BLOCK, NULL, &old);
  check("empty behind the handler", is_only(&old, 0));

  sigaction(SIGSEGV, &action, NULL);
  handler_worked = false;
  raise(SIGSEGV);
  check("vectors in a SIGSEGV handler", handler_worked && is_full(&in_handler));

  action.sa_sigaction = exchange;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGUSR1, &action, NULL);
  sigemptyset(&one);
  sigaddset(&one, SIGSEGV);
  sigprocmask(SIG_SETMASK, &one, NULL);
  raise(SIGUSR1);
  sigprocmask(SIG_SETMASK, &none, &old);
  check("mask shown in the frame", sigismember(&in_handler, SIGSEGV) && !sigismember(&in_handler, SIGBUS));
  check("mask taken from the frame", is_only(&old, SIGBUS));
  return finish("all_signals_blocked");
}
