// New threads and programs inherit the mask that the application believes to have, and programs this host.
#include <errno.h>

#include <cstdarg>
#include <cstdlib>

#include "sve/trap/host/export.h"
#include "sve/trap/host/handed_environment.h"
#include "sve/trap/host/next.h"
#include "sve/trap/host/shown_processor.h"
#include "sve/trap/host/start.h"
#include "sve/trap/host/thread_signals.h"

namespace quern {
namespace {

// What a new thread is to run. Allocated as the C library allocates for a thread anyway.
template <typename Result>
struct thread_start {
  Result (*routine)(void*);
  void* argument;
  bool inherits_vector_length;
};

// The kernel gave the thread its creator's mask in full: a SIGILL in it is to be held instead.
template <typename Result>
Result run_thread(void* start) {
  const thread_start<Result> copy = *static_cast<thread_start<Result>*>(start);
  std::free(start);
  adopt_kernel_mask();
  set_inherits_vector_length(copy.inherits_vector_length);
  return copy.routine(copy.argument);
}

template <typename Result, typename Create>
int create_thread(Result (*routine)(void*), void* argument, int out_of_memory, Create create) {
  auto* const start = static_cast<thread_start<Result>*>(std::malloc(sizeof(thread_start<Result>)));
  if (!start) return out_of_memory;
  *start = {routine, argument, inherits_vector_length()};
  const inherited_mask mask;
  const int result = create(run_thread<Result>, start);
  if (result != 0) std::free(start);
  return result;
}

// Calls execute(environment) with the mask and the environment as a new program is to have them. (Null is an empty
// one.)
template <typename Execute>
int hand_on(char* const* environment, Execute execute) {
  static char* const nothing[] = {nullptr};
  if (!environment) environment = nothing;
  // On the stack, as exec may be called between vfork and the new program, where the heap is not to be touched.
  void* const room = __builtin_alloca(room_for_environment(environment));
  const inherited_mask mask;
  return execute(environment_with_host(environment, room));
}

// The arguments of an execl: up to and with the null pointer.
template <typename Exec>
int exec_list(const char* first, va_list rest, Exec exec) {
  va_list counted;
  va_copy(counted, rest);
  std::size_t count = 1;
  for (const char* argument = first; argument; ++count) argument = va_arg(counted, const char*);
  va_end(counted);
  auto* const arguments = static_cast<char**>(__builtin_alloca(count * sizeof(char*)));
  arguments[0] = const_cast<char*>(first);
  for (std::size_t i = 1; i < count; ++i) arguments[i] = va_arg(rest, char*);
  return exec(arguments, rest);
}

}  // namespace
}  // namespace quern

using namespace quern;

// A thread's attributes may hold a mask of their own.
QUERN_EXPORT int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*),
                                void* argument) noexcept(false) {
  if (!held_signals() && !attributes && !inherits_vector_length())
    return next().pthread_create(thread, attributes, routine, argument);
  return create_thread(routine, argument, EAGAIN, [&](void* (*run)(void*), void* start) {
    return next().pthread_create(thread, attributes, run, start);
  });
}

QUERN_EXPORT int thrd_create(thrd_t* thread, thrd_start_t routine, void* argument) {
  if (!held_signals() && !inherits_vector_length()) return next().thrd_create(thread, routine, argument);
  return create_thread(routine, argument, int{thrd_nomem},
                       [&](int (*run)(void*), void* start) { return next().thrd_create(thread, run, start); });
}

// Each of these hands the mask on to a new program, and the first ones an environment.
#define HAND_ON(name, parameters, environment, call)                            \
  QUERN_EXPORT int name parameters {                                            \
    return hand_on(environment, [&](char* const* all) { return next().call; }); \
  }
HAND_ON(execve, (const char* path, char* const* argv, char* const* envp) noexcept, envp, execve(path, argv, all))
HAND_ON(execv, (const char* path, char* const* argv) noexcept, environ, execve(path, argv, all))
HAND_ON(execvp, (const char* file, char* const* argv) noexcept, environ, execvpe(file, argv, all))
HAND_ON(execvpe, (const char* file, char* const* argv, char* const* envp) noexcept, envp, execvpe(file, argv, all))
HAND_ON(fexecve, (int fd, char* const* argv, char* const* envp) noexcept, envp, fexecve(fd, argv, all))
HAND_ON(execveat, (int fd, const char* path, char* const* argv, char* const* envp, int flags) noexcept, envp,
        execveat(fd, path, argv, all, flags))
HAND_ON(posix_spawn,
        (pid_t * pid, const char* path, const posix_spawn_file_actions_t* actions, const posix_spawnattr_t* attributes,
         char* const* argv, char* const* envp),
        envp, posix_spawn(pid, path, actions, attributes, argv, all))
HAND_ON(posix_spawnp,
        (pid_t * pid, const char* file, const posix_spawn_file_actions_t* actions, const posix_spawnattr_t* attributes,
         char* const* argv, char* const* envp),
        envp, posix_spawnp(pid, file, actions, attributes, argv, all))
#undef HAND_ON

QUERN_EXPORT int system(const char* command) {
  const inherited_mask mask;
  return next().system(command);
}

QUERN_EXPORT FILE* popen(const char* command, const char* mode) {
  const inherited_mask mask;
  return next().popen(command, mode);
}

QUERN_EXPORT int execl(const char* path, const char* first, ...) noexcept {
  va_list rest;
  va_start(rest, first);
  const int result = exec_list(first, rest, [&](char** argv, va_list&) { return execv(path, argv); });
  va_end(rest);
  return result;
}

QUERN_EXPORT int execlp(const char* file, const char* first, ...) noexcept {
  va_list rest;
  va_start(rest, first);
  const int result = exec_list(first, rest, [&](char** argv, va_list&) { return execvp(file, argv); });
  va_end(rest);
  return result;
}

// The environment stands behind the arguments' null pointer.
QUERN_EXPORT int execle(const char* path, const char* first, ...) noexcept {
  va_list rest;
  va_start(rest, first);
  const int result =
      exec_list(first, rest, [&](char** argv, va_list& last) { return execve(path, argv, va_arg(last, char**)); });
  va_end(rest);
  return result;
}
