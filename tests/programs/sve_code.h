// SVE code in small pieces, for programs that are about signals, threads and processes.
#ifndef QUERN_TESTS_SVE_CODE_H
#define QUERN_TESTS_SVE_CODE_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

// A loop that the compiler vectorises.
__attribute__((noinline, unused)) static uint32_t vector_sum(const uint32_t* a, size_t n) {
  uint32_t total = 0;
  for (size_t i = 0; i < n; ++i) total += a[i];
  return total;
}

// True when a vectorised sum of known numbers is right.
__attribute__((noinline, unused)) static bool vectors_work(void) {
  uint32_t numbers[211];
  for (uint32_t i = 0; i < 211; ++i) numbers[i] = i * i + 1;
  __asm__ volatile("" : : "r"(numbers) : "memory");
  return vector_sum(numbers, 211) == 3109296;
}

// The address of the load in loaded_sum, for handlers to compare with.
extern const unsigned char loaded_sum_load[];

// Loads one vector at p by one instruction and sums its words. X9 is 0x1234 at the load.
uint64_t loaded_sum(const void* p);
__asm__(
    ".text\n"
    ".arch armv8-a+sve\n"
    ".type loaded_sum, %function\n"
    "loaded_sum:\n"
    "  mov x9, #0x1234\n"
    "  ptrue p0.s\n"
    ".globl loaded_sum_load\n"
    "loaded_sum_load:\n"
    "  ld1w {z0.s}, p0/z, [x0]\n"
    "  uaddv d0, p0, z0.s\n"
    "  fmov x0, d0\n"
    "  ret\n"
    ".size loaded_sum, .-loaded_sum\n");

// The number of words in a vector.
static inline size_t vector_words(void) {
  size_t words;
  __asm__("cntw %0" : "=r"(words));
  return words;
}

#endif
