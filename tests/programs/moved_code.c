// Code that has run, and is then moved by mremap: as a whole, to where it is told and where there is room, and in
// parts, by the C library's function and by syscall().
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#include <sys/syscall.h>

#include "fresh_code.h"
#include "program.h"
#include "sve_code.h"

enum { NUMBER = 11, PAGE = 4096 };

static unsigned char* room_for(size_t bytes) {
  unsigned char* const room = mmap(NULL, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  munmap(room, bytes);
  return room;
}

// Code that has run, at its beginning and in its middle.
static unsigned char* code_that_ran(void) {
  unsigned char* const code = map_code(NULL, NUMBER);
  return is_right(call(code), NUMBER) && is_right(call(code + CODE_BYTES / 2), NUMBER + 1) ? code : NULL;
}

static bool works(void* code) {
  unsigned char* const bytes = code;
  bool right = code != MAP_FAILED;
  for (int i = 0; i != 3; ++i)
    right = right && is_right(call(bytes), NUMBER) && is_right(call(bytes + CODE_BYTES / 2), NUMBER + 1);
  return right;
}

int main(void) {
  check("to a place",
        works(mremap(code_that_ran(), CODE_BYTES, CODE_BYTES, MREMAP_MAYMOVE | MREMAP_FIXED, room_for(CODE_BYTES))));
  check("by syscall()", works((void*)syscall(SYS_mremap, code_that_ran(), CODE_BYTES, CODE_BYTES,
                                             MREMAP_MAYMOVE | MREMAP_FIXED, room_for(CODE_BYTES))));

  // Nothing can grow where another mapping is next to it.
  unsigned char* const room = room_for(2 * CODE_BYTES);
  mmap(room + CODE_BYTES, CODE_BYTES, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
  unsigned char* const narrow = map_code(room, NUMBER);
  bool right = works(narrow);
  unsigned char* const wide = mremap(narrow, CODE_BYTES, CODE_BYTES + PAGE, MREMAP_MAYMOVE);
  check("to where there is room for more", right && wide != narrow && works(wide));

  unsigned char* const code = code_that_ran();
  right = mremap(code, CODE_BYTES, CODE_BYTES, 0) == code && works(code);
  right = mremap(code, CODE_BYTES, CODE_BYTES / 2 + PAGE, 0) == code && works(code) && right;
  check("not at all", right);

  unsigned char* const half = mremap(code + CODE_BYTES / 2, PAGE, PAGE, MREMAP_MAYMOVE | MREMAP_FIXED, room_for(PAGE));
  check("in parts", half != MAP_FAILED && is_right(call(code), NUMBER) && is_right(call(half), NUMBER + 1));
  check("with a wrong address",
        mremap(code + 1, PAGE, PAGE, MREMAP_MAYMOVE) == MAP_FAILED && is_right(call(code), NUMBER));
  return finish("moved_code");
}
