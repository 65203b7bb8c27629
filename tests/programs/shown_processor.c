// What a program is told when it asks whether the processor has SVE, and of which vector length. With an argument: that
// it has none, as the user may want it.
#include <asm/hwcap.h>
#include <elf.h>
#include <errno.h>
#include <pthread.h>
#include <setjmp.h>
#include <signal.h>
#include <sys/auxv.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "program.h"

static unsigned long from_vector(unsigned long type) {
  char** behind = environ;
  while (*behind) ++behind;
  const Elf64_auxv_t* entry = (const Elf64_auxv_t*)(behind + 1);
  while (entry->a_type != type && entry->a_type != AT_NULL) ++entry;
  return entry->a_un.a_val;
}

static sigjmp_buf after_instruction;
static void leave(int signal) {
  (void)signal;
  siglongjmp(after_instruction, 1);
}

// Whether an instruction of SVE2 can be executed.
static bool sve2_works(void) {
  signal(SIGILL, leave);
  if (sigsetjmp(after_instruction, 1)) return false;
  __asm__ volatile(".inst 0x04206000" : : : "z0");  // mul z0.b, z0.b, z0.b
  return true;
}

static int vector_bytes(void) {
  uint64_t bytes;
  __asm__("cntb %0" : "=r"(bytes));
  return (int)bytes;
}

static bool is_invalid(unsigned long argument) {
  errno = 0;
  return prctl(PR_SVE_SET_VL, argument) == -1 && errno == EINVAL;
}

static void* length_in_thread(void* answer) {
  *(int*)answer = prctl(PR_SVE_GET_VL);
  return NULL;
}

static void check_lengths(void) {
  const int bytes = vector_bytes();
  check("the length", prctl(PR_SVE_GET_VL) == bytes);
  check("the length, by syscall", syscall(SYS_prctl, PR_SVE_GET_VL) == bytes);
  check("the same length", prctl(PR_SVE_SET_VL, bytes) == bytes);
  check("a longer one", prctl(PR_SVE_SET_VL, 8192) == bytes && vector_bytes() == bytes);
  check("a longer one for the next program", prctl(PR_SVE_SET_VL, 8192 | PR_SVE_SET_VL_ONEXEC) == bytes);
  check("an inherited one", prctl(PR_SVE_SET_VL, bytes | PR_SVE_VL_INHERIT) == (bytes | PR_SVE_VL_INHERIT));
  check("  is told", prctl(PR_SVE_GET_VL) == (bytes | PR_SVE_VL_INHERIT));
  pthread_t thread;
  int in_thread = 0;
  pthread_create(&thread, NULL, length_in_thread, &in_thread);
  pthread_join(thread, NULL);
  check("  is a new thread's", in_thread == (bytes | PR_SVE_VL_INHERIT));
  check("  or not", prctl(PR_SVE_SET_VL, bytes) == bytes && prctl(PR_SVE_GET_VL) == bytes);
  check("lengths and flags that there are not",
        is_invalid(0) && is_invalid(17) && is_invalid(8208) && is_invalid(1 << 20));
  check("other questions", prctl(PR_GET_DUMPABLE) == 1 && prctl(-1) == -1);
}

int main(int count, char** arguments) {
  (void)arguments;
  const bool has_sve = (getauxval(AT_HWCAP) & HWCAP_SVE) != 0, has_sve2 = (getauxval(AT_HWCAP2) & HWCAP2_SVE2) != 0;
  check("the vector says what getauxval does",
        from_vector(AT_HWCAP) == getauxval(AT_HWCAP) && from_vector(AT_PAGESZ) == getauxval(AT_PAGESZ));
  errno = 0;
  check("what the vector does not have", getauxval(999) == 0 && errno == ENOENT);
  check("SVE2 is as it is told", sve2_works() == has_sve2);
  if (count > 1) {
    check("no SVE", !has_sve && prctl(PR_SVE_GET_VL) == -1);
  } else {
    check("SVE", has_sve);
    check_lengths();
  }
  return finish("shown_processor");
}
