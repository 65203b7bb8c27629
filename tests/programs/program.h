// What the test programs share: plain loops that the compiler vectorises are judged by the same loops without vectors.
#ifndef QUERN_TESTS_PROGRAM_H
#define QUERN_TESTS_PROGRAM_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

// A loop for the compiler to vectorise, and the same loop as its judge.
#define VECTOR __attribute__((noipa))
#define SCALAR __attribute__((noipa, optimize("no-tree-vectorize", "no-tree-loop-distribute-patterns")))

// The least size of a table of test cases: sizes around every power of two up to several vectors of the longest length.
static const size_t test_sizes[] = {0,  1,  2,  3,   7,   8,   15,  16,  17,  31, 33,
                                    63, 64, 65, 127, 129, 255, 256, 257, 511, 777};
enum { TEST_SIZES = sizeof test_sizes / sizeof *test_sizes, LARGEST_TEST_SIZE = 777 };

static int failed_checks;

// Prints the outcome of a check, so that the output tells what ran.
static inline void check(const char* name, bool holds) {
  printf("%s: %s\n", name, holds ? "ok" : "WRONG");
  fflush(stdout);  // the program may be about to die
  if (!holds) ++failed_checks;
}

// A check of one of many cases: prints wrong ones only.
static inline void check_case(const char* name, size_t size, bool holds) {
  if (holds) return;
  printf("%s: WRONG for %zu elements\n", name, size);
  ++failed_checks;
}

// main's result.
static inline int finish(const char* program) {
  printf("%s: %s\n", program, failed_checks ? "FAILED" : "passed");
  return failed_checks != 0;
}

__attribute__((unused)) static SCALAR bool same_bytes(const void* a, const void* b, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    if (((const uint8_t*)a)[i] != ((const uint8_t*)b)[i]) return false;
  }
  return true;
}

// The same numbers on every run (an xorshift generator).
static inline uint32_t next_random(void) {
  static uint32_t state = 0x9E3779B9;
  state ^= state << 13;
  state ^= state >> 17;
  state ^= state << 5;
  return state;
}

static inline void fill_random(void* bytes, size_t count) {
  for (size_t i = 0; i < count; ++i) ((uint8_t*)bytes)[i] = (uint8_t)(next_random() >> 11);
}

// A digest of an array, printed for comparison with another processor's (FNV-1a).
static inline void print_digest(const char* name, const void* bytes, size_t count) {
  uint64_t digest = 0xCBF29CE484222325;
  for (size_t i = 0; i < count; ++i) digest = (digest ^ ((const uint8_t*)bytes)[i]) * 0x100000001B3;
  printf("%s: %016llx\n", name, (unsigned long long)digest);
}

#endif
