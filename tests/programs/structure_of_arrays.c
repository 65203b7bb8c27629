// Arrays of records of two, three and four members to arrays of the members and back.
#include "program.h"

#define TWO(name, kind, element)                                                                          \
  static kind void name(element* restrict x, element* restrict y, const element* restrict in, size_t n) { \
    for (size_t i = 0; i < n; ++i) {                                                                      \
      x[i] = in[2 * i];                                                                                   \
      y[i] = in[2 * i + 1];                                                                               \
    }                                                                                                     \
  }
TWO(split_2_u8, VECTOR, uint8_t)
TWO(split_2_u8_scalar, SCALAR, uint8_t)

#define THREE(name, kind, element)                                                                                 \
  static kind void name(element* restrict x, element* restrict y, element* restrict z, const element* restrict in, \
                        size_t n) {                                                                                \
    for (size_t i = 0; i < n; ++i) {                                                                               \
      x[i] = in[3 * i];                                                                                            \
      y[i] = in[3 * i + 1];                                                                                        \
      z[i] = in[3 * i + 2];                                                                                        \
    }                                                                                                              \
  }
THREE(split_3_u32, VECTOR, uint32_t)
THREE(split_3_u32_scalar, SCALAR, uint32_t)

#define JOIN_THREE(name, kind, element)                                                              \
  static kind void name(element* restrict out, const element* restrict x, const element* restrict y, \
                        const element* restrict z, size_t n) {                                       \
    for (size_t i = 0; i < n; ++i) {                                                                 \
      out[3 * i] = x[i];                                                                             \
      out[3 * i + 1] = y[i];                                                                         \
      out[3 * i + 2] = z[i];                                                                         \
    }                                                                                                \
  }
JOIN_THREE(join_3_u32, VECTOR, uint32_t)
JOIN_THREE(join_3_u32_scalar, SCALAR, uint32_t)

// Four members changed in place: a structure load and a structure store.
#define FOUR(name, kind, element)                                                      \
  static kind void name(element* restrict out, const element* restrict in, size_t n) { \
    for (size_t i = 0; i < n; ++i) {                                                   \
      out[4 * i] = in[4 * i + 3];                                                      \
      out[4 * i + 1] = (element)(in[4 * i] + 1);                                       \
      out[4 * i + 2] = in[4 * i + 2] ^ in[4 * i + 1];                                  \
      out[4 * i + 3] = in[4 * i + 2];                                                  \
    }                                                                                  \
  }
FOUR(turn_4_u16, VECTOR, uint16_t)
FOUR(turn_4_u16_scalar, SCALAR, uint16_t)

enum { N = LARGEST_TEST_SIZE };
static uint32_t in[4 * N];
static uint32_t out[4 * N], judged[4 * N];

int main(void) {
  fill_random(in, sizeof in);
  for (size_t i = 0; i < TEST_SIZES; ++i) {
    const size_t n = test_sizes[i];
    uint8_t *bytes = (void*)out, *judged_bytes = (void*)judged;
    split_2_u8(bytes, bytes + N, (void*)in, n);
    split_2_u8_scalar(judged_bytes, judged_bytes + N, (void*)in, n);
    check_case("split_2_u8", n, same_bytes(out, judged, sizeof out));
    split_3_u32(out, out + N, out + 2 * N, in, n);
    split_3_u32_scalar(judged, judged + N, judged + 2 * N, in, n);
    check_case("split_3_u32", n, same_bytes(out, judged, sizeof out));
    join_3_u32(out, in, in + N, in + 2 * N, n);
    join_3_u32_scalar(judged, in, in + N, in + 2 * N, n);
    check_case("join_3_u32", n, same_bytes(out, judged, sizeof out));
    turn_4_u16((void*)out, (void*)in, n);
    turn_4_u16_scalar((void*)judged, (void*)in, n);
    check_case("turn_4_u16", n, same_bytes(out, judged, sizeof out));
  }
  print_digest("results", out, sizeof out);
  return finish("structure_of_arrays");
}
