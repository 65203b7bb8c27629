// Stores to places given by another array, with 32- and 64-bit indices, and with a stride.
#include "program.h"

enum { N = 512 };

#define PUT(name, kind, element, index)                                                                           \
  static kind void name(element* restrict to, const element* restrict from, const index* restrict at, size_t n) { \
    for (size_t i = 0; i < n; ++i) to[at[i]] = from[i];                                                           \
  }
PUT(put_u32, VECTOR, uint32_t, uint32_t)
PUT(put_u32_scalar, SCALAR, uint32_t, uint32_t)
PUT(put_u64, VECTOR, uint64_t, int64_t)
PUT(put_u64_scalar, SCALAR, uint64_t, int64_t)

#define STRIDE(name, kind)                                                                             \
  static kind void name(uint64_t* restrict to, const uint64_t* restrict from, size_t step, size_t n) { \
    for (size_t i = 0; i < n; ++i) to[i * step] = from[i] + 5;                                         \
  }
STRIDE(put_stride, VECTOR)
STRIDE(put_stride_scalar, SCALAR)

static uint32_t places[N], narrow[N];
static int64_t wide_places[N];
static uint64_t wide[N], out[8 * N], judged[8 * N];

int main(void) {
  fill_random(narrow, sizeof narrow);
  fill_random(wide, sizeof wide);
  for (size_t i = 0; i < N; ++i) places[i] = (uint32_t)(i * 77 % N);
  for (size_t i = 0; i < N; ++i) wide_places[i] = (int64_t)(next_random() % N) - N / 2;  // the last of equals stays
  put_u32((uint32_t*)out, narrow, places, N - 3);
  put_u32_scalar((uint32_t*)judged, narrow, places, N - 3);
  check("put_u32", same_bytes(out, judged, sizeof out));
  put_u64(out + N, wide, wide_places, N - 1);
  put_u64_scalar(judged + N, wide, wide_places, N - 1);
  check("put_u64", same_bytes(out, judged, sizeof out));
  put_stride(out + N, wide, 7, N - 9);
  put_stride_scalar(judged + N, wide, 7, N - 9);
  check("put_stride", same_bytes(out, judged, sizeof out));
  print_digest("results", out, sizeof out);
  return finish("scatter");
}
