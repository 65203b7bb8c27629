// A signal that is sent to the process while all of its threads block it waits for the one that asks for it, by sigwait
// or by a descriptor, whichever thread it is.
#include <pthread.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

static sigset_t one;
static pthread_barrier_t ready;

static void* wait_for_it(void* argument) {
  int signal = 0;
  pthread_barrier_wait(&ready);
  const bool right = vectors_work() && sigwait(&one, &signal) == 0 && vectors_work();
  *(int*)argument = right ? signal : -1;
  return NULL;
}

static void* read_it(void* argument) {
  const int descriptor = signalfd(-1, &one, SFD_CLOEXEC);
  struct signalfd_siginfo info = {0};
  pthread_barrier_wait(&ready);
  const bool right = vectors_work() && read(descriptor, &info, sizeof info) == sizeof info && vectors_work();
  *(int*)argument = right ? (int)info.ssi_signo : -1;
  close(descriptor);
  return NULL;
}

// Sends the signal before and after the other thread has come to wait.
static bool reaches(void* (*thread)(void*), int signal) {
  pthread_t id;
  bool right = true;
  for (int late = 0; late != 2; ++late) {
    int got = 0;
    pthread_create(&id, NULL, thread, &got);
    if (!late) kill(getpid(), signal);
    pthread_barrier_wait(&ready);
    if (late) {
      usleep(20000);
      kill(getpid(), signal);
    }
    right = vectors_work() && pthread_join(id, NULL) == 0 && got == signal && right;
  }
  return right;
}

int main(void) {
  static const struct {
    int signal;
    const char* by_sigwait;
    const char* by_descriptor;
  } kinds[] = {{SIGUSR1, "SIGUSR1 by sigwait", "SIGUSR1 by signalfd"},
               {SIGSEGV, "SIGSEGV by sigwait", "SIGSEGV by signalfd"},
               {SIGBUS, "SIGBUS by sigwait", "SIGBUS by signalfd"}};
  pthread_barrier_init(&ready, NULL, 2);
  for (int i = 0; i < 3; ++i) {
    sigemptyset(&one);
    sigaddset(&one, kinds[i].signal);
    sigprocmask(SIG_SETMASK, &one, NULL);
    alarm(20);
    check(kinds[i].by_sigwait, reaches(wait_for_it, kinds[i].signal));
    check(kinds[i].by_descriptor, reaches(read_it, kinds[i].signal));
  }
  return finish("waited_for");
}
