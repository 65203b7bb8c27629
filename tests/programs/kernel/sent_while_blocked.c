// SIGILL, SIGBUS and SIGSEGV that are sent while they are blocked wait until they are let go, or waited for.
#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

static volatile int calls, value;

static void handler(int signal, siginfo_t* info, void* context) {
  (void)signal;
  (void)context;
  ++calls;
  value = info->si_value.sival_int;
}

static void block(int how, int signal) {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  sigprocmask(how, &set, NULL);
}

static bool is_pending(int signal) {
  sigset_t set;
  sigpending(&set);
  return sigismember(&set, signal);
}

int main(void) {
  struct sigaction action = {.sa_sigaction = handler, .sa_flags = SA_SIGINFO};
  static const int signals[] = {SIGILL, SIGBUS, SIGSEGV, SIGUSR1};
  sigset_t all, none;
  sigfillset(&all);
  sigemptyset(&none);
  for (int i = 0; i < 4; ++i) {
    const int signal = signals[i];
    sigaction(signal, &action, NULL);
    calls = 0;
    block(SIG_BLOCK, signal);
    sigqueue(getpid(), signal, (union sigval){.sival_int = 17 + i});
    check("waits", calls == 0 && is_pending(signal) && vectors_work());
    block(SIG_UNBLOCK, signal);
    check("comes when let go, with its value", calls == 1 && value == 17 + i && !is_pending(signal));

    block(SIG_BLOCK, signal);
    raise(signal);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    siginfo_t info;
    check("is waited for", sigwaitinfo(&set, &info) == signal && info.si_signo == signal && calls == 1);
    raise(signal);
    check("interrupts sigsuspend", sigsuspend(&none) == -1 && errno == EINTR && calls == 2);
    raise(signal);
    check("interrupts ppoll", ppoll(NULL, 0, NULL, &none) == -1 && errno == EINTR && calls == 3);
    const struct timespec soon = {.tv_nsec = 1000};
    check("still blocked behind it", ppoll(NULL, 0, &soon, &all) == 0 && calls == 3);
    raise(signal);
    check("and waits again", calls == 3 && is_pending(signal));
    block(SIG_UNBLOCK, signal);
    check("to be let go", calls == 4);
  }
  check("vectors at the end", vectors_work());
  return finish("sent_while_blocked");
}
