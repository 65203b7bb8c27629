// A sparse matrix of integers times a vector: gathers by column number; and gathers by 64-bit and by scaled indices.
#include "program.h"

enum { ROWS = 40, COLUMNS = 1000, FILLED = 4000 };

#define MULTIPLY(name, kind)                                                                                    \
  static kind void name(uint64_t* out, const uint32_t* starts, const uint32_t* columns, const uint32_t* values, \
                        const uint32_t* vector) {                                                               \
    for (size_t row = 0; row < ROWS; ++row) {                                                                   \
      uint32_t total = 0;                                                                                       \
      for (uint32_t i = starts[row]; i < starts[row + 1]; ++i) total += values[i] * vector[columns[i]];         \
      out[row] = total;                                                                                         \
    }                                                                                                           \
  }
MULTIPLY(multiply, VECTOR)
MULTIPLY(multiply_scalar, SCALAR)

#define PICK(name, kind, element, index)                                                                           \
  static kind void name(element* restrict out, const element* restrict from, const index* restrict at, size_t n) { \
    for (size_t i = 0; i < n; ++i) out[i] = from[at[i]];                                                           \
  }
PICK(pick_u64, VECTOR, uint64_t, uint64_t)
PICK(pick_u64_scalar, SCALAR, uint64_t, uint64_t)
PICK(pick_s32, VECTOR, int32_t, int32_t)
PICK(pick_s32_scalar, SCALAR, int32_t, int32_t)

static uint32_t starts[ROWS + 1], columns[FILLED], values[FILLED], vector[COLUMNS];
static uint64_t out[COLUMNS], judged[COLUMNS], wide[COLUMNS], places[COLUMNS];
static int32_t narrow_places[COLUMNS];

int main(void) {
  fill_random(values, sizeof values);
  fill_random(vector, sizeof vector);
  fill_random(wide, sizeof wide);
  for (size_t i = 0; i < FILLED; ++i) columns[i] = next_random() % COLUMNS;
  for (size_t i = 0; i < COLUMNS; ++i) places[i] = next_random() % COLUMNS;
  for (size_t i = 0; i < COLUMNS; ++i) narrow_places[i] = (int32_t)(next_random() % COLUMNS) - COLUMNS / 2;
  // Rows of many lengths, among them empty ones.
  for (size_t row = 0; row < ROWS; ++row) starts[row + 1] = starts[row] + (uint32_t)(row % 3 ? row * 4 : 0);
  multiply(out, starts, columns, values, vector);
  multiply_scalar(judged, starts, columns, values, vector);
  check("multiply", same_bytes(out, judged, sizeof out));
  print_digest("product", out, ROWS * sizeof *out);
  pick_u64(out, wide, places, COLUMNS - 3);
  pick_u64_scalar(judged, wide, places, COLUMNS - 3);
  check("pick_u64", same_bytes(out, judged, sizeof out));
  pick_s32((int32_t*)out, (int32_t*)wide + COLUMNS, narrow_places, COLUMNS - 3);
  pick_s32_scalar((int32_t*)judged, (int32_t*)wide + COLUMNS, narrow_places, COLUMNS - 3);
  check("pick_s32 (negative places too)", same_bytes(out, judged, sizeof out));
  print_digest("picked", out, sizeof out);
  return finish("sparse_matrix");
}
