// A sparse matrix times a vector, the matrix in compressed rows: the values and column numbers are read in order, the
// vector's elements where the column numbers say, by gathers.
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include <quern/roi.h>

enum { ROWS = 600, COLUMNS = 6000, PER_ROW = 24, FILLED = ROWS * PER_ROW };

static uint32_t row_start[ROWS + 1], column[FILLED];
static float value[FILLED], vector[COLUMNS], product[ROWS];

__attribute__((noinline)) static void multiply(float* restrict to, const float* restrict from) {
  for (size_t row = 0; row < ROWS; ++row) {
    float sum = 0;
    for (uint32_t i = row_start[row]; i < row_start[row + 1]; ++i) sum += value[i] * from[column[i]];
    to[row] = sum;
  }
}

// Two elements of three lie in a band about the diagonal, the third anywhere.
static uint32_t column_of(size_t row, size_t i, uint32_t* seed) {
  *seed = *seed * 1664525 + 1013904223;
  if (i % 3 == 2) return (*seed >> 8) % COLUMNS;
  return (uint32_t)((row * (COLUMNS / ROWS) + 2 * i) % COLUMNS);
}

int main(void) {
  uint32_t seed = 1;
  double wanted = 0, found = 0;
  for (size_t i = 0; i < COLUMNS; ++i) vector[i] = (float)(i % 10);
  for (size_t row = 0; row < ROWS; ++row) {
    row_start[row + 1] = row_start[row] + PER_ROW;
    for (size_t i = 0; i < PER_ROW; ++i) {
      const size_t at = row * PER_ROW + i;
      column[at] = column_of(row, i, &seed);
      value[at] = (float)(at % 5) - 1;
      wanted += (double)(((long)(at % 5) - 1) * (long)(column[at] % 10));
    }
  }
  quern_roi_begin();
  multiply(product, vector);
  quern_roi_end();
  for (size_t row = 0; row < ROWS; ++row) found += (double)product[row];
  printf("sum of the product: %.0f, %s\n", found, found == wanted ? "right" : "WRONG");
  return found != wanted;
}
