// The older calls for signal actions and masks do what they always did.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#include <errno.h>
#include <signal.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

static volatile int calls;

static void handler(int signal) {
  (void)signal;
  ++calls;
  if (!vectors_work()) ++failed_checks;
}

static bool is_blocked(int signal) {
  sigset_t mask;
  sigprocmask(SIG_BLOCK, NULL, &mask);
  return sigismember(&mask, signal);
}

static struct sigaction* action_of(int signal) {
  static struct sigaction told;
  sigaction(signal, NULL, &told);
  return &told;
}

int main(void) {
  static const int signals[] = {SIGSEGV, SIGILL, SIGUSR1};
  for (int i = 0; i < 3; ++i) {
    const int s = signals[i], bit = 1 << (s - 1);
    calls = 0;
    check("signal: default before", signal(s, handler) == SIG_DFL);
    check("signal: handler before", signal(s, handler) == handler);
    check("signal: restarts", action_of(s)->sa_flags == SA_RESTART && sigismember(&action_of(s)->sa_mask, s));
    raise(s);
    raise(s);
    check("signal: handler stays", calls == 2 && !is_blocked(s));
    siginterrupt(s, 1);
    check("siginterrupt", action_of(s)->sa_flags == 0);
    signal(s, handler);
    check("siginterrupt: for signal too", action_of(s)->sa_flags == 0);
    siginterrupt(s, 0);
    check("siginterrupt: taken back", action_of(s)->sa_flags == SA_RESTART);

    check("sigset: hold", sigset(s, SIG_HOLD) == handler && is_blocked(s));
    raise(s);
    check("sigset: held", calls == 2);
    check("sigset: handler", sigset(s, handler) == SIG_HOLD && !is_blocked(s) && calls == 3);
    sighold(s);
    check("sighold", is_blocked(s));
    raise(s);
    check("sigpause", sigpause(s) == -1 && errno == EINTR && calls == 4 && is_blocked(s));
    sigrelse(s);
    check("sigrelse", !is_blocked(s));
    sigignore(s);
    raise(s);
    check("sigignore", calls == 4 && action_of(s)->sa_handler == SIG_IGN);
    check("sigblock", !(sigblock(bit) & bit) && is_blocked(s));
    check("sigsetmask", (sigsetmask(0) & bit) && !is_blocked(s));
    sysv_signal(s, handler);
    raise(s);
    check("sysv_signal", calls == 5 && action_of(s)->sa_handler == SIG_DFL);
  }
  check("refused: no signal", signal(0, handler) == SIG_ERR && errno == EINVAL);
  check("refused: SIGKILL", signal(SIGKILL, handler) == SIG_ERR && errno == EINVAL);
  return finish("older_signal_calls");
}
