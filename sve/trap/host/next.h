// The C library's own functions behind the names that this host takes over.
#pragma once

#include <poll.h>
#include <pthread.h>
#include <setjmp.h>
#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/epoll.h>
#include <sys/select.h>
#include <threads.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>

// Every such function that is called on; the others are done by system calls.
// clang-format off
#define QUERN_NEXT_FUNCTIONS(FUNCTION) \
  FUNCTION(execve) FUNCTION(execveat) FUNCTION(execvpe) FUNCTION(fexecve) FUNCTION(popen) \
  FUNCTION(posix_spawn) FUNCTION(posix_spawnp) FUNCTION(system) FUNCTION(pthread_create) FUNCTION(thrd_create) \
  FUNCTION(pthread_cancel) FUNCTION(pthread_setcanceltype) \
  FUNCTION(epoll_pwait) FUNCTION(epoll_pwait2) FUNCTION(ppoll) FUNCTION(pselect) FUNCTION(sigsuspend) \
  FUNCTION(sigtimedwait) FUNCTION(siglongjmp) FUNCTION(longjmp) FUNCTION(_longjmp) \
  FUNCTION(getcontext) FUNCTION(setcontext) FUNCTION(swapcontext) FUNCTION(sysconf) \
  FUNCTION(timer_create)
// clang-format on

namespace quern {

struct next_functions {
#define MEMBER(name) decltype(&::name) name;
  QUERN_NEXT_FUNCTIONS(MEMBER)
#undef MEMBER
  decltype(&::siglongjmp) longjmp_checked;  // __longjmp_chk
  int (*setjmps[3])(sigjmp_buf, int);       // __sigsetjmp, _setjmp, setjmp
};

// Found at the first call, which the host's start makes, as looking up is not for signal handlers. A function that the
// C library does not have is null.
const next_functions& next();

}  // namespace quern
