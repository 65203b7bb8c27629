// Children of fork and vfork begin while other threads meet code that is new to them, and meet such code themselves.
#include <pthread.h>
#include <stdatomic.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "fresh_code.h"
#include "program.h"
#include "sve_code.h"

enum { THREADS = 3, CHILDREN = 4 };

static atomic_bool stop;
static atomic_int made;

static void* meet_new_code(void* argument) {
  bool right = true;
  for (uint32_t number = 1; !stop; number = number % 90 + 1) {
    unsigned char* const code = map_code(NULL, number);
    right = is_right(call(code), number) && is_right(call(code + CODE_BYTES / 2), number + 1) && right;
    munmap(code, CODE_BYTES);
    ++made;
  }
  return right ? argument : NULL;
}

// Whether the child ended as a child does whose results are right, and the thread that waits finds its own so.
static bool ended_well(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 42 && vectors_work();
}

static bool fork_works(uint32_t number) {
  const pid_t child = fork();
  if (child == 0) _exit(is_right(call(map_code(NULL, number)), number) && vectors_work() ? 42 : 1);
  return ended_well(child);
}

// (The child may do no more than call what its parent has made.)
static bool vfork_works(uint32_t number) {
  unsigned char* const code = map_code(NULL, number);
  const pid_t child = vfork();
  if (child == 0) _exit(is_right(call(code), number) ? 42 : 1);
  const bool right = ended_well(child) && is_right(call(code), number);
  munmap(code, CODE_BYTES);
  return right;
}

int main(void) {
  pthread_t threads[THREADS];
  for (int i = 0; i != THREADS; ++i) pthread_create(&threads[i], NULL, meet_new_code, &stop);
  bool forks = true, vforks = true;
  for (uint32_t i = 0; i != CHILDREN; ++i) {
    for (const int before = made; made == before;) usleep(100);  // the others are at it
    forks = fork_works(i + 1) && forks;
    vforks = vfork_works(i + 40) && vforks;
  }
  stop = true;
  check("fork", forks);
  check("vfork", vforks);
  bool right = true;
  for (int i = 0; i != THREADS; ++i) {
    void* result;
    pthread_join(threads[i], &result);
    right = right && result;
  }
  check("threads that meet new code", right);
  return finish("fork_while_patching");
}
