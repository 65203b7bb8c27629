// New programs come up with the mask, the ignored signals and the waiting ones of the old, and SVE runs in them: by
// exec from a child, from a thread, between vfork and exec, by posix_spawn and by a shell, and with environments in
// which nothing tells of an emulator.
#include <pthread.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

static char* program;

enum { NONE = 40, FULL = 41, OTHER = 42 };

static bool is_full(const sigset_t* set) {
  for (int signal = 1; signal <= 64; ++signal) {
    const bool never = signal == SIGKILL || signal == SIGSTOP || signal == 32 || signal == 33;
    if (!never && !sigismember(set, signal)) return false;
  }
  return true;
}

static bool is_waiting(int signal) {
  sigset_t waiting;
  sigpending(&waiting);
  return sigismember(&waiting, signal);
}

static bool is_ignored(int signal) {
  struct sigaction action;
  sigaction(signal, NULL, &action);
  return action.sa_handler == SIG_IGN;
}

// The program run again by its other main: tells by its status what it finds.
static int report(const char* what) {
  const char* const libraries = getenv("LD_PRELOAD");
  if (strcmp(what, "no libraries") == 0) return libraries && !*libraries ? NONE : OTHER;
  if (!vectors_work()) return 1;
  sigset_t mask;
  sigprocmask(SIG_BLOCK, NULL, &mask);
  if (strcmp(what, "mask") == 0) return sigisemptyset(&mask) ? NONE : is_full(&mask) ? FULL : OTHER;
  if (strcmp(what, "waiting") == 0) return is_waiting(SIGUSR1) + 2 * is_waiting(SIGSEGV) + 4 * is_waiting(SIGBUS);
  return is_ignored(SIGUSR1) + 2 * is_ignored(SIGHUP);
}

static int status_of(pid_t child) {
  int status;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

static int by_exec(const char* what) {
  const pid_t child = fork();
  if (child == 0) {
    execl(program, program, what, (char*)NULL);
    _exit(2);
  }
  return status_of(child);
}

static int by_vfork(const char* what) {
  char* const arguments[] = {program, (char*)what, NULL};
  const pid_t child = vfork();
  if (child == 0) {
    if (vectors_work()) execv(program, arguments);
    _exit(2);
  }
  return vectors_work() ? status_of(child) : 3;
}

static int by_spawn(const char* what) {
  char* const arguments[] = {program, (char*)what, NULL};
  pid_t child;
  return posix_spawn(&child, program, NULL, NULL, arguments, environ) == 0 ? status_of(child) : 2;
}

static int by_shell(const char* what) {
  char command[256];
  snprintf(command, sizeof command, "exec %s %s", program, what);
  const int status = system(command);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

static int with_environment(const char* what, char** environment) {
  const pid_t child = fork();
  if (child == 0) {
    execle(program, program, what, (char*)NULL, environment);
    _exit(2);
  }
  return status_of(child);
}

static int by_exec_alone(const char* what) { return with_environment(what, (char*[]){NULL}); }

static int by_exec_with_libraries(const char* what) {
  return with_environment(what, (char*[]){"A=1", "LD_PRELOAD=libm.so.6:libgcc_s.so.1", "B=2", NULL});
}

static int by_exec_of_emptied(const char* what) {
  char* const arguments[] = {program, (char*)what, NULL};
  const pid_t child = fork();
  if (child == 0) {
    clearenv();
    execvp(program, arguments);
    _exit(2);
  }
  return status_of(child);
}

static int by_spawn_alone(const char* what) {
  char* const arguments[] = {program, (char*)what, NULL};
  pid_t child;
  return posix_spawn(&child, program, NULL, NULL, arguments, (char*[]){NULL}) == 0 ? status_of(child) : 2;
}

static void* exec_from_thread(void* what) {
  if (vectors_work()) execl(program, program, what, (char*)NULL);
  return NULL;
}

static int by_thread(const char* what) {
  const pid_t child = fork();
  if (child == 0) {
    pthread_t thread;
    pthread_create(&thread, NULL, exec_from_thread, (void*)what);
    pthread_join(thread, NULL);
    _exit(2);
  }
  return status_of(child);
}

static const struct {
  const char* name;
  int (*run)(const char*);
} ways[] = {{"exec", by_exec},
            {"vfork", by_vfork},
            {"posix_spawn", by_spawn},
            {"shell", by_shell},
            {"exec from a thread", by_thread},
            {"exec without environment", by_exec_alone},
            {"exec with other libraries", by_exec_with_libraries},
            {"exec after clearenv", by_exec_of_emptied},
            {"posix_spawn without environment", by_spawn_alone}};
enum { WAYS = sizeof ways / sizeof *ways };

static void run_all(const char* what) {
  for (int i = 0; i < WAYS; ++i) printf("%s by %s: %d\n", what, ways[i].name, ways[i].run(what));
  fflush(stdout);
}

// Ends by a signal between vfork and exec, of its own or of a fault.
static int die_in_vfork(bool by_fault) {
  const pid_t child = vfork();
  if (child == 0) {
    if (by_fault) loaded_sum(NULL);
    kill(getpid(), SIGKILL);
    _exit(2);
  }
  return vectors_work() ? status_of(child) : 3;
}

int main(int count, char** arguments) {
  program = arguments[0];
  if (count == 2) return report(arguments[1]);
  run_all("mask");
  sigset_t full, none;
  sigfillset(&full);
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &full, NULL);
  run_all("mask");
  sigprocmask(SIG_SETMASK, &none, NULL);

  signal(SIGUSR1, SIG_IGN);
  run_all("ignored");
  signal(SIGUSR1, SIG_DFL);

  check("no libraries are wanted", with_environment("no libraries", (char*[]){"LD_PRELOAD=", NULL}) == NONE);
  check("ended in vfork", die_in_vfork(false) == -SIGKILL);
  check("ended by a fault in vfork", die_in_vfork(true) == -SIGSEGV);

  // The one that waits is kept over exec alone: a child begins without any.
  sigprocmask(SIG_SETMASK, &full, NULL);
  raise(SIGUSR1);
  raise(SIGSEGV);
  raise(SIGBUS);
  check("waiting", is_waiting(SIGUSR1) && is_waiting(SIGSEGV) && is_waiting(SIGBUS) && vectors_work());
  printf("waiting in a child: %d\n", by_exec("waiting"));
  if (failed_checks) return finish("new_programs");
  fflush(stdout);
  execl(program, program, "waiting", (char*)NULL);
  return 2;
}
