// Code that is replaced, made by the program itself, met by many threads at once, and met anew on either side of a
// fork. What the process has mapped looks as it did before.
#include <pthread.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "fresh_code.h"
#include "program.h"
#include "sve_code.h"

enum { ROUNDS = 40, THREADS = 200, STACK = 131072 };

// As when a library is unloaded, and another is loaded in its place.
static void check_replaced_mappings(void) {
  bool right = true;
  unsigned char* code = NULL;
  for (uint32_t number = 1; number <= ROUNDS; ++number) {
    code = map_code(code, number);
    right = is_right(call(code), number) && is_right(call(code), number) && right;
    if (number % 4 != 0) continue;
    munmap(code, CODE_BYTES);
    code = NULL;
  }
  check("replaced mappings", right);
}

// As a compiler in the program does, with pages that are never writable and executable at once.
static void check_written_code(void) {
  void* const code = mmap(NULL, CODE_BYTES, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  bool right = true;
  for (uint32_t number = 1; number <= ROUNDS; ++number) {
    mprotect(code, CODE_BYTES, PROT_READ | PROT_WRITE);
    write_code(code, number);
    __builtin___clear_cache(code, (char*)code + CODE_BYTES);
    mprotect(code, CODE_BYTES, PROT_READ | PROT_EXEC);
    right = is_right(call(code), number) && is_right(call(code), number) && right;
  }
  check("written code", right);
}

// A piece of the program's own code is made writable, and one of its words is changed, the first or another one.
static bool is_rewritten(uint32_t* code, size_t place, uint32_t word, uint64_t result, bool by_number) {
  if (by_number) {
    syscall(SYS_mprotect, code, CODE_BYTES, PROT_READ | PROT_WRITE);
  } else {
    mprotect(code, CODE_BYTES, PROT_READ | PROT_WRITE);
  }
  uint32_t words[8];
  write_code(words, 12);
  const bool right = ((volatile uint32_t*)code)[place] == words[place];
  code[place] = word;
  mprotect(code, CODE_BYTES, PROT_READ | PROT_EXEC);
  __builtin___clear_cache((char*)code, (char*)code + CODE_BYTES);
  return right && call(code) == result && call(code) == result;
}

static void check_rewritten_words(void) {
  const uint32_t mov_13 = 0x25B8C1A0, ptrue_of_one = 0x2598E020;
  bool right = true;
  for (int by_number = 0; by_number != 2; ++by_number) {
    unsigned char* const code = map_code(NULL, 12);
    right = is_right(call(code), 12) && is_right(call(code), 12) && right;
    right = is_rewritten((uint32_t*)code, 1, ptrue_of_one, 12, by_number) && right;
    right = is_rewritten((uint32_t*)code, 0, mov_13, 13, by_number) && right;
  }
  check("rewritten words", right);
}

static void check_moved_code(void) {
  unsigned char* const code = map_code(NULL, 7);
  bool right = is_right(call(code), 7);
  unsigned char* const room = mmap(NULL, CODE_BYTES, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  munmap(room, CODE_BYTES);
  map_code(room, 9);
  right = is_right(call(room), 9) && is_right(call(room + CODE_BYTES / 2), 10) &&
          is_right(call(code + CODE_BYTES / 2), 8) && right;
  check("code at other places", right);
}

static pthread_barrier_t barrier;
static unsigned char* shared_code;

static void* meet_new_code(void* unused) {
  (void)unused;
  pthread_barrier_wait(&barrier);
  return is_right(call(shared_code), 3) && is_right(call(shared_code + CODE_BYTES / 2), 4) ? &barrier : NULL;
}

static void check_threads(void) {
  shared_code = map_code(NULL, 3);
  pthread_t threads[THREADS];
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, STACK);  // the least that is allowed
  pthread_barrier_init(&barrier, NULL, THREADS);
  for (int i = 0; i != THREADS; ++i) pthread_create(&threads[i], &attributes, meet_new_code, NULL);
  bool right = true;
  for (int i = 0; i != THREADS; ++i) {
    void* result;
    pthread_join(threads[i], &result);
    right = right && result;
  }
  check("threads meet the same new code", right);
}

// Both sides go on to code that is new to them.
static bool new_code_works(uint32_t number) {
  bool right = true;
  for (uint32_t i = 0; i != 10; ++i) {
    unsigned char* const code = map_code(NULL, number + i);
    right = is_right(call(code), number + i) && is_right(call(code + CODE_BYTES / 2), number + i + 1) && right;
  }
  return right && vectors_work();
}

static void check_fork(void) {
  bool right = true;
  for (uint32_t round = 0; round != 3; ++round) {
    const pid_t child = fork();
    if (child == 0) _exit(new_code_works(60) ? 42 : 1);
    right = new_code_works(20) && right;
    int status = 0;
    waitpid(child, &status, 0);
    right = right && WIFEXITED(status) && WEXITSTATUS(status) == 42;
  }
  check("new code on both sides of a fork", right);
}

// The process's mappings that are not below `begin` and begin below `end`; with only_writable those alone that are
// writable and executable.
static int count_mappings(const void* begin, const void* end, bool only_writable) {
  int count = 0;
  char line[512];
  FILE* const maps = fopen("/proc/self/maps", "r");
  while (fgets(line, sizeof line, maps)) {
    unsigned long start = 0, behind = 0;
    char rights[5] = "";
    sscanf(line, "%lx-%lx %4s", &start, &behind, rights);
    const bool wanted = !only_writable || (rights[1] == 'w' && rights[2] == 'x');
    if (behind > (uintptr_t)begin && start < (uintptr_t)end) count += wanted;
  }
  fclose(maps);
  return count;
}

// No page has become writable and executable for good.
static void check_rights(void) {
  check("no page is writable and executable", count_mappings(NULL, (void*)UINTPTR_MAX, true) == 0);
}

// A mapping with code that has run here and there is one mapping still; so is the next one at the same place.
static void check_mappings(void) {
  unsigned char* code = NULL;
  bool right = true;
  for (uint32_t number = 31; number <= 34; ++number) {
    code = map_code(code, number);
    right = is_right(call(code), number) && is_right(call(code + CODE_BYTES / 2), number + 1) && right;
    right = count_mappings(code, code + CODE_BYTES, false) == 1 && right;
  }
  check("mappings stay whole", right);
}

int main(void) {
  check_replaced_mappings();
  check_written_code();
  check_rewritten_words();
  check_moved_code();
  check_threads();
  check_fork();
  check_mappings();
  check_rights();
  return finish("changing_code");
}
