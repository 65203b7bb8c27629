// Matrices transposed by perfect shuffles (ZIP) and back (UZP), and pairs exchanged (TRN), on vectors of any length.
#include "program.h"

// out = two instructions' results on the two vectors at `in`.
#define SHUFFLE(name, type, first, second)                                                                      \
  static void name(void* out, const void* in) {                                                                 \
    __asm__ volatile("ptrue p0.b\n ld1b {z0.b}, p0/z, [%[in]]\n ld1b {z1.b}, p0/z, [%[in], #1, mul vl]\n" first \
                     " z2." type ", z0." type ", z1." type "\n" second " z3." type ", z0." type ", z1." type    \
                     "\n"                                                                                       \
                     "st1b {z2.b}, p0, [%[out]]\n st1b {z3.b}, p0, [%[out], #1, mul vl]\n"                      \
                     :                                                                                          \
                     : [in] "r"(in), [out] "r"(out)                                                             \
                     : "z0", "z1", "z2", "z3", "p0", "memory");                                                 \
  }
SHUFFLE(zip_b, "b", "zip1", "zip2")
SHUFFLE(zip_h, "h", "zip1", "zip2")
SHUFFLE(zip_s, "s", "zip1", "zip2")
SHUFFLE(zip_d, "d", "zip1", "zip2")
SHUFFLE(uzp_b, "b", "uzp1", "uzp2")
SHUFFLE(uzp_h, "h", "uzp1", "uzp2")
SHUFFLE(uzp_s, "s", "uzp1", "uzp2")
SHUFFLE(uzp_d, "d", "uzp1", "uzp2")
SHUFFLE(trn_h, "h", "trn1", "trn2")

static uint64_t vector_bytes(void) {
  uint64_t bytes;
  __asm__("rdvl %0, #1" : "=r"(bytes));
  return bytes;
}

enum { LONGEST = 256 };
static uint8_t matrix[2 * LONGEST], shuffled[2 * LONGEST], judged[2 * LONGEST];

// judged = matrix, of `rows` rows of elements of `size` bytes, transposed.
static void transpose_scalar(size_t rows, size_t size) {
  const size_t columns = 2 * vector_bytes() / size / rows;
  for (size_t row = 0; row < rows; ++row) {
    for (size_t column = 0; column < columns; ++column) {
      for (size_t byte = 0; byte < size; ++byte) {
        judged[(column * rows + row) * size + byte] = matrix[(row * columns + column) * size + byte];
      }
    }
  }
}

static void try_size(const char* name, size_t size, void (*zip)(void*, const void*), void (*uzp)(void*, const void*)) {
  for (size_t i = 0; i < sizeof shuffled; ++i) shuffled[i] = matrix[i];
  // Each shuffle doubles the number of rows that are transposed, up to one for each element.
  const size_t most = 2 * vector_bytes() / size < 8 ? 2 * vector_bytes() / size : 8;
  for (size_t rows = 2; rows <= most; rows *= 2) {
    zip(shuffled, shuffled);
    transpose_scalar(rows, size);
    check(name, same_bytes(shuffled, judged, 2 * vector_bytes()));
  }
  for (size_t rows = 2; rows <= most; rows *= 2) uzp(shuffled, shuffled);
  check("and back", same_bytes(shuffled, matrix, 2 * vector_bytes()));
}

int main(void) {
  fill_random(matrix, sizeof matrix);
  try_size("bytes", 1, zip_b, uzp_b);
  try_size("halfwords", 2, zip_h, uzp_h);
  try_size("words", 4, zip_s, uzp_s);
  try_size("doublewords", 8, zip_d, uzp_d);
  trn_h(shuffled, matrix);
  trn_h(shuffled, shuffled);
  check("exchanged twice", same_bytes(shuffled, matrix, 2 * vector_bytes()));
  print_digest("matrix", judged, 2 * vector_bytes());
  return finish("transpose");
}
