// SVE code in files of its own, so that each mapping of it is code which nobody has met before.
#ifndef QUERN_TESTS_FRESH_CODE_H
#define QUERN_TESTS_FRESH_CODE_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/mman.h>
#include <unistd.h>

#include "sve_code.h"

enum { CODE_BYTES = 65536 };

// mov z0.s, #number; ptrue p0.s; uaddv d0, p0, z0.s; fmov x0, d0; ret
static inline void write_code(uint32_t* words, uint32_t number) {
  const uint32_t code[] = {0x25B8C000 | number << 5, 0x2598E3E0, 0x04812000, 0x9E660000, 0xD65F03C0};
  for (size_t i = 0; i != sizeof code / sizeof *code; ++i) words[i] = code[i];
}

static inline uint64_t call(void* code) {
  typedef uint64_t function(void);
  return ((function*)code)();
}

// Whether the code for `number` has answered so.
static inline bool is_right(uint64_t sum, uint32_t number) { return sum == number * vector_words(); }

// A file with code for `number` at its beginning and for the next number in its middle.
static inline int code_file(uint32_t number) {
  const int file = memfd_create("code", 0);
  static const uint32_t nothing[CODE_BYTES / 4];
  uint32_t words[8] = {0};
  if (write(file, nothing, sizeof nothing) != (ssize_t)sizeof nothing) return -1;
  write_code(words, number);
  if (pwrite(file, words, sizeof words, 0) != (ssize_t)sizeof words) return -1;
  write_code(words, number + 1);
  return pwrite(file, words, sizeof words, CODE_BYTES / 2) == (ssize_t)sizeof words ? file : -1;
}

// Its mapping, at `address` or where there is room.
static inline unsigned char* map_code(void* address, uint32_t number) {
  const int file = code_file(number);
  void* const code = mmap(address, CODE_BYTES, PROT_READ | PROT_EXEC, MAP_PRIVATE | (address ? MAP_FIXED : 0), file, 0);
  close(file);
  return (unsigned char*)code;
}

#endif
