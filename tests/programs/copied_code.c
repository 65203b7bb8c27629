// A program that copies its own SVE code: code that has not run yet, code that has run, in memory of no file and of a
// file, and that file. Each copy computes what its original does.
#include <string.h>

#include "counting_run.h"
#include "fresh_code.h"
#include "program.h"

enum { NUMBER = 5, WORDS_BYTES = 128 };

// Memory that can be executed, with a copy of the code. Far from all else, so that what stands there in the place of a
// word of the original leads to no other code.
static unsigned char* copy_of(const void* code) {
  static uintptr_t place = 0x6000000000;
  place += 1 << 28;
  unsigned char* const copy =
      mmap((void*)place, CODE_BYTES, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  memcpy(copy, code, WORDS_BYTES);
  mprotect(copy, CODE_BYTES, PROT_READ | PROT_EXEC);
  __builtin___clear_cache((char*)copy, (char*)copy + WORDS_BYTES);
  return copy;
}

int main(void) {
  unsigned char* const original = map_code(NULL, NUMBER);
  unsigned char* const copy = copy_of(original);
  check("a copy of code that has not run", is_right(call(copy), NUMBER));
  check("the original after it", is_right(call(original), NUMBER));

  unsigned char* const second = copy_of(copy);
  check("a copy of code of no file that has run", is_right(call(second), NUMBER));
  check("again", is_right(call(second), NUMBER) && is_right(call(copy), NUMBER));

  unsigned char* const third = copy_of(original);
  check("a copy of code that has run", is_right(call(third), NUMBER));
  check("again", is_right(call(third), NUMBER) && is_right(call(original), NUMBER));
  const bool right = count_by_run() == COUNTED_WORDS;
  unsigned char* const fourth = copy_of((const void*)(uintptr_t)count_by_run);
  check("a copy of a long run", right && call(fourth) == COUNTED_WORDS);
  check("again", call(fourth) == COUNTED_WORDS && count_by_run() == COUNTED_WORDS);

  unsigned char* const again = map_code(NULL, NUMBER);
  check("the file of code that has run", is_right(call(again), NUMBER));
  return finish("copied_code");
}
