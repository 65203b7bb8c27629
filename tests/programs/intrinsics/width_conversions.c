// Conversions between formats and integers of different widths under a predicate (FCVT, FCVTZS, FCVTZU, SCVTF, UCVTF).
// The narrower side lies at the bottom of the wider side's element: what is above it is ignored in operands; in results
// it is zeros, or copies of a signed integer's sign. Scalars judge by casts.
#include <string.h>

#include "floating_point.h"
#include "vectors.h"

static mask_bytes mask;

// The names of both sides in intrinsics, their types, and the bits of the wider.
#define CONVERSIONS                         \
  CONVERT(f16, f32, _Float16, float, 32)    \
  CONVERT(f16, f64, _Float16, double, 64)   \
  CONVERT(f32, f16, float, _Float16, 32)    \
  CONVERT(f32, f64, float, double, 64)      \
  CONVERT(f64, f16, double, _Float16, 64)   \
  CONVERT(f64, f32, double, float, 64)      \
  CONVERT(f16, s16, _Float16, int16_t, 16)  \
  CONVERT(f16, s32, _Float16, int32_t, 32)  \
  CONVERT(f16, s64, _Float16, int64_t, 64)  \
  CONVERT(f16, u16, _Float16, uint16_t, 16) \
  CONVERT(f16, u32, _Float16, uint32_t, 32) \
  CONVERT(f16, u64, _Float16, uint64_t, 64) \
  CONVERT(f32, s32, float, int32_t, 32)     \
  CONVERT(f32, s64, float, int64_t, 64)     \
  CONVERT(f32, u32, float, uint32_t, 32)    \
  CONVERT(f32, u64, float, uint64_t, 64)    \
  CONVERT(f64, s32, double, int32_t, 64)    \
  CONVERT(f64, s64, double, int64_t, 64)    \
  CONVERT(f64, u32, double, uint32_t, 64)   \
  CONVERT(f64, u64, double, uint64_t, 64)   \
  CONVERT(s16, f16, int16_t, _Float16, 16)  \
  CONVERT(s32, f16, int32_t, _Float16, 32)  \
  CONVERT(s64, f16, int64_t, _Float16, 64)  \
  CONVERT(u16, f16, uint16_t, _Float16, 16) \
  CONVERT(u32, f16, uint32_t, _Float16, 32) \
  CONVERT(u64, f16, uint64_t, _Float16, 64) \
  CONVERT(s32, f32, int32_t, float, 32)     \
  CONVERT(s64, f32, int64_t, float, 64)     \
  CONVERT(u32, f32, uint32_t, float, 32)    \
  CONVERT(u64, f32, uint64_t, float, 64)    \
  CONVERT(s32, f64, int32_t, double, 64)    \
  CONVERT(s64, f64, int64_t, double, 64)    \
  CONVERT(u32, f64, uint32_t, double, 64)   \
  CONVERT(u64, f64, uint64_t, double, 64)

#define IS_INTEGER(type) ((type)0.5 == 0)

// Conversions to 16 bits stop at their limits, where a cast has 32 bits.
static inline int16_t half_to_s16(_Float16 x) {
  int16_t result;
  __asm__("fcvtzs %h0, %h1" : "=w"(result) : "w"(x));
  return result;
}
static inline uint16_t half_to_u16(_Float16 x) {
  uint16_t result;
  __asm__("fcvtzu %h0, %h1" : "=w"(result) : "w"(x));
  return result;
}
#define CAST(type, x) \
  _Generic((type)0, int16_t : half_to_s16((_Float16)(x)), uint16_t : half_to_u16((_Float16)(x)), default : (type)(x))

#define CONVERT(from, to, from_type, to_type, bits)                                           \
  static VECTOR void from##_to_##to(uint8_t* out, const void* in) {                           \
    const svbool_t all = svptrue_b8();                                                        \
    const svuint8_t old = svld1(all, out), x = svld1(all, (const uint8_t*)in);                \
    const __auto_type converted =                                                             \
        svcvt_##to##_m(svreinterpret_##to(old), predicate_of(mask), svreinterpret_##from(x)); \
    svst1(all, out, svreinterpret_u8(converted));                                             \
  }                                                                                           \
  static SCALAR void from##_to_##to##_scalar(uint8_t* out, const void* in) {                  \
    for (size_t i = 0; i < svcntb(); i += bits / 8) {                                         \
      if (!mask[i]) continue;                                                                 \
      from_type x;                                                                            \
      memcpy(&x, (const uint8_t*)in + i, sizeof x);                                           \
      const to_type result = CAST(to_type, x);                                                \
      uint64_t whole = IS_INTEGER(to_type) ? (uint64_t)result : 0;                            \
      if (!IS_INTEGER(to_type)) memcpy(&whole, &result, sizeof result);                       \
      memcpy(out + i, &whole, bits / 8);                                                      \
    }                                                                                         \
  }
CONVERSIONS
#undef CONVERT

static const struct {
  const char* name;
  void (*vector)(uint8_t* out, const void* in);
  void (*scalar)(uint8_t* out, const void* in);
  size_t size, lane;
  bool from_integer;
} conversions[] = {
#define CONVERT(from, to, from_type, to_type, bits) \
  {#from " to " #to, from##_to_##to, from##_to_##to##_scalar, sizeof(from_type), bits / 8, IS_INTEGER(from_type)},
    CONVERSIONS
#undef CONVERT
};

// Operands at the bottom of elements of random bytes: integers of all magnitudes, ordinary numbers or the format's
// edges.
static SCALAR void fill_operands(uint8_t* in, size_t c, bool corners) {
  const size_t size = conversions[c].size;
  fill_random(in, VECTOR_BYTES);
  for (size_t i = 0; i < VECTOR_BYTES; i += conversions[c].lane) {
    uint64_t operand = (uint64_t)next_random() << 32 | next_random();
    operand = (uint64_t)((int64_t)operand >> next_random() % 64);
    if (!conversions[c].from_integer && corners) fill_corners(&operand, size, 1);
    if (!conversions[c].from_integer && !corners) fill_numbers(&operand, size, 1, -40000, 70000);
    memcpy(in + i, &operand, size);
  }
}

int main(void) {
  uint8_t in[VECTOR_BYTES], out[VECTOR_BYTES], judged[VECTOR_BYTES];
  for (size_t c = 0; c < sizeof conversions / sizeof *conversions; ++c) {
    for (int mode = 0; mode < ROUNDING_MODES; ++mode) {
      for (int pattern = NONE; pattern < MASKS; ++pattern) {
        fill_mask(mask, conversions[c].lane, pattern);
        fill_operands(in, c, pattern % 2);
        fill_random(out, sizeof out);
        memcpy(judged, out, sizeof judged);
        set_rounding((uint64_t)mode);
        take_status();
        conversions[c].vector(out, in);
        const uint32_t status = take_status();
        conversions[c].scalar(judged, in);
        const uint32_t wanted = take_status();
        set_rounding(NEAREST);
        compare_results(conversions[c].name, true, 1, svcntb(), out, status, judged, wanted);
      }
    }
  }
  return finish("width_conversions");
}
