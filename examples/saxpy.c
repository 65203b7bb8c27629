// y = a x + y over two arrays: each element of both is loaded once, and y stored once.
#include <stddef.h>
#include <stdio.h>

#include <quern/roi.h>

enum { LENGTH = 20000 };

static float x[LENGTH], y[LENGTH];

__attribute__((noinline)) static void saxpy(float* restrict sum, float factor, const float* restrict term, size_t n) {
  for (size_t i = 0; i < n; ++i) sum[i] += factor * term[i];
}

// All values are small integers, so that no order of operations rounds them.
static float start_of_x(size_t i) { return (float)(i % 100); }
static float start_of_y(size_t i) { return (float)(i % 7) - 3; }

int main(void) {
  for (size_t i = 0; i < LENGTH; ++i) {
    x[i] = start_of_x(i);
    y[i] = start_of_y(i);
  }
  quern_roi_begin();
  saxpy(y, 3, x, LENGTH);
  quern_roi_end();
  size_t wrong = 0;
  for (size_t i = 0; i < LENGTH; ++i) wrong += y[i] != 3 * start_of_x(i) + start_of_y(i);
  printf("saxpy of %d elements: %zu wrong\n", LENGTH, wrong);
  return wrong != 0;
}
