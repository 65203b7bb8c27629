// Conversions between floating-point numbers and integers of all widths (FCVTZS, FCVTZU, SCVTF, UCVTF), between formats
// (FCVT), and rounding to integral numbers (FRINTM, FRINTP, FRINTZ, FRINTA, FRINTX, FRINTI). Numbers that do not fit
// are among them: such a conversion is invalid, and the processor's result the nearest that fits.
#include "floating_point.h"

enum { N = LARGEST_TEST_SIZE };

// name, from, to, expression of x
#define CONVERSIONS                                         \
  CONVERT(half_to_s16, _Float16, int16_t, (int16_t)x)       \
  CONVERT(half_to_u16, _Float16, uint16_t, (uint16_t)x)     \
  CONVERT(half_to_s32, _Float16, int32_t, (int32_t)x)       \
  CONVERT(half_to_u64, _Float16, uint64_t, (uint64_t)x)     \
  CONVERT(single_to_s32, float, int32_t, (int32_t)x)        \
  CONVERT(single_to_u32, float, uint32_t, (uint32_t)x)      \
  CONVERT(single_to_s64, float, int64_t, (int64_t)x)        \
  CONVERT(single_to_u64, float, uint64_t, (uint64_t)x)      \
  CONVERT(double_to_s32, double, int32_t, (int32_t)x)       \
  CONVERT(double_to_u32, double, uint32_t, (uint32_t)x)     \
  CONVERT(double_to_s64, double, int64_t, (int64_t)x)       \
  CONVERT(double_to_u64, double, uint64_t, (uint64_t)x)     \
  CONVERT(s16_to_half, int16_t, _Float16, x)                \
  CONVERT(u16_to_half, uint16_t, _Float16, x)               \
  CONVERT(s32_to_single, int32_t, float, x)                 \
  CONVERT(u32_to_single, uint32_t, float, x)                \
  CONVERT(s64_to_single, int64_t, float, x)                 \
  CONVERT(u64_to_single, uint64_t, float, x)                \
  CONVERT(s32_to_double, int32_t, double, x)                \
  CONVERT(u32_to_double, uint32_t, double, x)               \
  CONVERT(s64_to_double, int64_t, double, x)                \
  CONVERT(u64_to_double, uint64_t, double, x)               \
  CONVERT(half_to_single, _Float16, float, x)               \
  CONVERT(half_to_double, _Float16, double, x)              \
  CONVERT(single_to_half, float, _Float16, (_Float16)x)     \
  CONVERT(single_to_double, float, double, x)               \
  CONVERT(double_to_half, double, _Float16, (_Float16)x)    \
  CONVERT(double_to_single, double, float, (float)x)        \
  CONVERT(floor_single, float, float, __builtin_floorf(x))  \
  CONVERT(ceil_double, double, double, __builtin_ceil(x))   \
  CONVERT(trunc_single, float, float, __builtin_truncf(x))  \
  CONVERT(round_double, double, double, __builtin_round(x)) \
  CONVERT(rint_single, float, float, __builtin_rintf(x))    \
  CONVERT(nearbyint_double, double, double, __builtin_nearbyint(x))

#define LOOP(name, kind, from, to, result)                     \
  static kind void name(void* out, const void* in, size_t n) { \
    to* restrict results = out;                                \
    const from* restrict numbers = in;                         \
    for (size_t i = 0; i < n; ++i) {                           \
      const from x = numbers[i];                               \
      results[i] = result;                                     \
    }                                                          \
  }
#define CONVERT(name, from, to, result) \
  LOOP(name, VECTOR, from, to, result)  \
  LOOP(name##_scalar, SCALAR, from, to, result)
CONVERSIONS
#undef CONVERT
#undef LOOP

static const struct {
  const char* name;
  void (*vector)(void* out, const void* in, size_t n);
  void (*scalar)(void* out, const void* in, size_t n);
  size_t from, to;
  bool from_integer;
} conversions[] = {
#define CONVERT(name, from, to, result) {#name, name, name##_scalar, sizeof(from), sizeof(to), (from)0.5 == 0},
    CONVERSIONS
#undef CONVERT
};

static uint64_t in[N], out[N], judged[N];

static void convert(size_t c, size_t n) {
  take_status();
  conversions[c].vector(out, in, n);
  const uint32_t status = take_status();
  conversions[c].scalar(judged, in, n);
  const uint32_t wanted = take_status();
  const size_t bytes = n * conversions[c].to;
  print_results(conversions[c].name, n, out, bytes, status);
  // -ffast-math allows to round twice, by way of a format between.
  const bool rounds_twice = conversions[c].from == 8 && conversions[c].to == 2;
  check_case(conversions[c].name, n, same_bytes(out, judged, bytes) || (rounds_twice && !STRICT));
  check_case("its status", n, (status & wanted) == wanted || !STRICT);
}

int main(void) {
  for (size_t c = 0; c < sizeof conversions / sizeof *conversions; ++c) {
    for (size_t i = 10; i < TEST_SIZES; i += 3) {
      if (conversions[c].from_integer)
        fill_random(in, sizeof in);
      else
        fill_numbers(in, conversions[c].from, N, -1000, 1000);
      convert(c, test_sizes[i]);
    }
    for (int mode = 0; mode < ROUNDING_MODES; ++mode) {
      if (!conversions[c].from_integer) fill_corners(in, conversions[c].from, N);
      set_rounding(mode);
      convert(c, N);
      set_rounding(NEAREST);
    }
  }
  return finish("float_to_integer");
}
