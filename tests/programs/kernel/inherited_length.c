// PR_SVE_VL_INHERIT outlives exec, and its absence too: the program runs itself, first with the flag, with its own
// environment and with none, then without the flag.
#include <sys/prctl.h>
#include <unistd.h>

#include "../program.h"

static int vector_bytes(void) {
  uint64_t bytes;
  __asm__("cntb %0" : "=r"(bytes));
  return (int)bytes;
}

static int run_again_without_environment(const char* part) {
  execle("/proc/self/exe", "inherited_length", part, NULL, (char*[]){NULL});
  return 1;
}

static int run_again(const char* part, unsigned long flags) {
  prctl(PR_SVE_SET_VL, vector_bytes() | flags);
  execl("/proc/self/exe", "inherited_length", part, NULL);
  return 1;
}

int main(int count, char** arguments) {
  const int bytes = vector_bytes(), length = prctl(PR_SVE_GET_VL);
  switch (count > 1 ? arguments[1][0] : '1') {
    case '1': check("not inherited at first", length == bytes); return run_again("2", PR_SVE_VL_INHERIT);
    case '2': check("inherited", length == (bytes | PR_SVE_VL_INHERIT)); return run_again_without_environment("3");
    case '3': check("inherited again", length == (bytes | PR_SVE_VL_INHERIT)); return run_again("4", 0);
    default: check("not inherited any more", length == bytes);
  }
  return finish("inherited_length");
}
