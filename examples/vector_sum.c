// Adds arrays of 32-bit integers, element by element, in a plain loop that the compiler turns into SVE instructions,
// and compares each sum with a scalar loop's. The vector loops are the region of interest, so the trace should tell of
// every byte of the three arrays of each length, once; the program says where they are.
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include <quern/roi.h>

static const size_t lengths[] = {1, 63, 65, 129, 1001};
enum { LENGTHS = sizeof lengths / sizeof *lengths, LONGEST = 1001 };

static int32_t a[LONGEST], b[LONGEST], sums[LONGEST];

__attribute__((noinline)) static void add_arrays(int32_t* restrict sum, const int32_t* restrict left,
                                                 const int32_t* restrict right, size_t length) {
  for (size_t i = 0; i < length; ++i) sum[i] = left[i] + right[i];
}

__attribute__((noinline, optimize("no-tree-vectorize"))) static bool sums_are_right(size_t length) {
  for (size_t i = 0; i < length; ++i) {
    if (sums[i] != a[i] + b[i]) return false;
  }
  return true;
}

int main(void) {
  for (int32_t i = 0; i < LONGEST; ++i) {
    a[i] = 3 * i - 700;
    b[i] = 500000 - 7 * i * i;
  }
  bool right = true;
  size_t elements = 0;
  for (size_t i = 0; i < LENGTHS; ++i) {
    quern_roi_begin();
    add_arrays(sums, a, b, lengths[i]);
    quern_roi_end();
    const bool this_right = sums_are_right(lengths[i]);
    printf("%4zu elements: %s\n", lengths[i], this_right ? "as the scalar loop's" : "WRONG");
    right = right && this_right;
    elements += lengths[i];
  }
  printf("loaded from %p to %p and from %p to %p, stored from %p to %p\n", (void*)a, (void*)(a + LONGEST), (void*)b,
         (void*)(b + LONGEST), (void*)sums, (void*)(sums + LONGEST));
  printf("in the region of interest: %zu bytes loaded, %zu bytes stored\n", 2 * elements * sizeof *a,
         elements * sizeof *sums);
  puts(right ? "all sums are right" : "some sums are WRONG");
  return right ? 0 : 1;
}
