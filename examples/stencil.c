// Heat that spreads on a square plate: each step replaces a point by the mean of its four neighbours. Three rows are
// read at a time, so that a row is loaded anew for each of the three rows of results that need it.
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include <quern/roi.h>

enum { SIDE = 200, STEPS = 4 };

typedef float plate[SIDE][SIDE];

static plate hot, next, judged, judged_next;

__attribute__((noinline)) static void spread(plate* restrict to, plate* restrict from) {
  for (size_t row = 1; row < SIDE - 1; ++row) {
    for (size_t i = 1; i < SIDE - 1; ++i) {
      (*to)[row][i] = ((*from)[row - 1][i] + (*from)[row + 1][i] + (*from)[row][i - 1] + (*from)[row][i + 1]) * 0.25F;
    }
  }
}

__attribute__((noinline, optimize("no-tree-vectorize"))) static void spread_by_scalars(plate* restrict to,
                                                                                       plate* restrict from) {
  for (size_t row = 1; row < SIDE - 1; ++row) {
    for (size_t i = 1; i < SIDE - 1; ++i) {
      (*to)[row][i] = ((*from)[row - 1][i] + (*from)[row + 1][i] + (*from)[row][i - 1] + (*from)[row][i + 1]) * 0.25F;
    }
  }
}

int main(void) {
  for (size_t i = 0; i < SIDE; ++i) hot[0][i] = next[0][i] = 100;  // one edge is kept hot
  memcpy(judged, hot, sizeof hot);
  memcpy(judged_next, hot, sizeof hot);
  quern_roi_begin();
  for (int step = 0; step < STEPS; step += 2) {
    spread(&next, &hot);
    spread(&hot, &next);
  }
  quern_roi_end();
  for (int step = 0; step < STEPS; step += 2) {
    spread_by_scalars(&judged_next, &judged);
    spread_by_scalars(&judged, &judged_next);
  }
  const int same = memcmp(hot, judged, sizeof hot) == 0;
  printf("heat after %d steps: %g beside the hot edge, %s\n", STEPS, (double)hot[1][SIDE / 2],
         same ? "as the scalar loop's" : "WRONG");
  return !same;
}
