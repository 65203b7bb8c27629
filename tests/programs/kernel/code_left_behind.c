// Code that has run, and is moved by mremap with MREMAP_DONTUNMAP: the file's code is at both places then.
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#include "fresh_code.h"
#include "program.h"
#include "sve_code.h"

enum { NUMBER = 21, PAGE = 4096 };

int main(void) {
  unsigned char* const code = map_code(NULL, NUMBER);
  bool right = is_right(call(code), NUMBER);
  unsigned char* const moved = mremap(code, PAGE, PAGE, MREMAP_MAYMOVE | MREMAP_DONTUNMAP);
  check("moved", right && moved != MAP_FAILED);
  if (moved == MAP_FAILED) return finish("code_left_behind");
  for (int i = 0; i != 3; ++i) right = is_right(call(moved), NUMBER) && is_right(call(code), NUMBER) && right;
  check("both places", right);
  return finish("code_left_behind");
}
