// A program that copies its own SVE code: code that has not run yet, code in memory of no file that has run, and the
// file of code that has run. Each copy computes what its original does.
#include <string.h>

#include "fresh_code.h"
#include "program.h"

enum { NUMBER = 5, WORDS_BYTES = 64 };

// Memory that can be executed, with a copy of the code.
static unsigned char* copy_of(const void* code) {
  unsigned char* const copy = mmap(NULL, CODE_BYTES, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
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

  unsigned char* const again = map_code(NULL, NUMBER);
  check("the file of code that has run", is_right(call(again), NUMBER));
  return finish("copied_code");
}
