// ends WAY: traces a load and ends with status 7 in that way, or by a signal.
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include "quern/roi.h"

static void trace_load(void) {
  static float room[64];
  quern_roi_begin();
  __asm__ volatile("ptrue p0.s\n ld1w {z0.s}, p0/z, [%0]" : : "r"(room) : "z0", "p0", "memory");
  quern_roi_end();
}

// The parent of a child that ends well, and does not itself.
static void end_in_child(pid_t child, void (*trace)(void)) {
  if (child == 0) {
    trace();
    _exit(7);
  }
  int status;
  waitpid(child, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 7) raise(SIGKILL);
}

static void nothing(void) {}

int main(int count, char** words) {
  const char* way = count > 1 ? words[1] : "";
  trace_load();
  if (!strcmp(way, "exit")) exit(7);
  if (!strcmp(way, "_exit")) _exit(7);
  if (!strcmp(way, "_Exit")) _Exit(7);
  if (!strcmp(way, "quick_exit")) {
    at_quick_exit(trace_load);
    quick_exit(7);
  }
  if (!strcmp(way, "fork")) end_in_child(fork(), trace_load);
  if (!strcmp(way, "vfork")) end_in_child(vfork(), nothing);
  raise(SIGKILL);
}
