// Vectors and predicates for programs with intrinsics.
#ifndef QUERN_TESTS_VECTORS_H
#define QUERN_TESTS_VECTORS_H

#include <arm_sve.h>

#include "program.h"

// Loads and stores of elements of the type that C computes with: the intrinsics know halves as __fp16, whose arithmetic
// is that of float.
#define HALVES(kind, p) _Generic((p), _Float16* : (kind __fp16*)(p), const _Float16* : (kind __fp16*)(p), default : (p))
#define LOAD(pg, p) svld1(pg, HALVES(const, p))
#define STORE(pg, p, v) svst1(pg, HALVES(, p), v)

// The longest vector.
enum { VECTOR_BYTES = 256 };

// A predicate in memory has a byte for each byte of a vector; an element's first byte says whether it is active.
typedef uint8_t mask_bytes[VECTOR_BYTES];

enum { NONE, ALL, FIRST, LAST, RANDOM, MASKS = 8 };

__attribute__((unused)) static SCALAR void fill_mask(uint8_t* mask, size_t size, int pattern) {
  const size_t bytes = svcntb();
  for (size_t i = 0; i < VECTOR_BYTES; ++i) mask[i] = 0;
  for (size_t i = 0; i < bytes; i += size) {
    const bool edge = (pattern == FIRST && i == 0) || (pattern == LAST && i == bytes - size);
    mask[i] = pattern == ALL || edge || (pattern >= RANDOM && next_random() >> 30 != 0);
  }
}

static inline svbool_t predicate_of(const uint8_t* mask) { return svcmpne(svptrue_b8(), svld1(svptrue_b8(), mask), 0); }

#endif
