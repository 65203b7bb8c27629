// A child of fork goes on with its parent's vectors, and the two go separate ways.
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "program.h"
#include "sve_code.h"

// Forks with z5 filled and no call between, and stores z5.
static long fork_with_vector(uint32_t* words) {
  register long number __asm__("x8") = SYS_clone;
  register long flags __asm__("x0") = 17;  // SIGCHLD
  register long stack __asm__("x1") = 0;
  __asm__ volatile(
      "index z5.s, #7, #2\n"
      "svc #0\n"
      "ptrue p0.s\n"
      "st1w {z5.s}, p0, [%[words]]\n"
      : "+r"(flags)
      : "r"(number), "r"(stack), [words] "r"(words)
      : "z5", "p0", "memory");
  return flags;
}

static bool is_filled(const uint32_t* words) {
  for (size_t i = 0; i < vector_words(); ++i) {
    if (words[i] != 7 + 2 * i) return false;
  }
  return true;
}

int main(void) {
  uint32_t words[64];
  const long raw_child = fork_with_vector(words);
  if (raw_child == 0) _exit(is_filled(words) ? 11 : 12);
  int status;
  waitpid((pid_t)raw_child, &status, 0);
  check("child's vector", WIFEXITED(status) && WEXITSTATUS(status) == 11);
  check("parent's vector", is_filled(words));

  const pid_t child = fork();
  if (child == 0) _exit(vectors_work() ? 13 : 14);
  check("parent works", vectors_work());
  waitpid(child, &status, 0);
  check("child works", WIFEXITED(status) && WEXITSTATUS(status) == 13);

  const pid_t faulting = fork();
  if (faulting == 0) {
    fclose(stderr);
    close(2);
    loaded_sum(NULL);
    _exit(15);
  }
  waitpid(faulting, &status, 0);
  check("child's fault", WIFSIGNALED(status) && WTERMSIG(status) == 11);
  check("parent works on", vectors_work());
  return finish("fork_child");
}
