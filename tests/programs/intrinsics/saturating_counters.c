// Counters that stop at the limits of their type: SQINCB, UQDECH and their like for scalars and vectors, by patterns
// and by predicates (SQINCP, UQDECP), and sums and differences of vectors (SQADD, UQSUB).
#include "vectors.h"

typedef __int128 wide;

static SCALAR wide clamp(wide value, wide least, wide most) {
  return value < least ? least : value > most ? most : value;
}

#define LEAST(type) ((wide)(type)-1 < 0 ? (wide)((uint64_t)1 << (8 * sizeof(type) - 1)) * -1 : (wide)0)
#define MOST(type) (LEAST(type) + (wide)(((wide)1 << (8 * sizeof(type))) - 1))

// Where counters start: so near the limits that counts reach them, and far from them.
#define STARTS(type)                                \
  const type starts[] = {0,                         \
                         1,                         \
                         100,                       \
                         (type)LEAST(type),         \
                         (type)(LEAST(type) + 5),   \
                         (type)(LEAST(type) + 300), \
                         (type)MOST(type),          \
                         (type)(MOST(type) - 1),    \
                         (type)(MOST(type) - 5),    \
                         (type)(MOST(type) - 300)}
enum { STARTS_COUNT = 10 };

// A counter as wide as its type. SQINCB and its like write all of X for a word too, and the compiler takes the upper
// half for copies of the sign, as the architecture has it; the emulator gives zeros, as for every result of 32 bits.
#define OWN_WIDTH(counter)          \
  ({                                \
    __auto_type counter_ = counter; \
    __asm__("" : "+r"(counter_));   \
    counter_;                       \
  })

static void print_counter(const char* name, wide value) {
  printf("%s: %016llx\n", name, (unsigned long long)(uint64_t)value);
}

// Scalars and vectors that count the elements of a pattern, times a factor.
#define PATTERN(type, tag, size, pattern, factor)                                                            \
  do {                                                                                                       \
    STARTS(type);                                                                                            \
    const wide count = (wide)svcnt##size##_pat(pattern) * factor;                                            \
    for (size_t i = 0; i < STARTS_COUNT; ++i) {                                                              \
      const type up = OWN_WIDTH(svqinc##size##_pat_n_##tag(starts[i], pattern, factor));                     \
      const type down = OWN_WIDTH(svqdec##size##_pat_n_##tag(starts[i], pattern, factor));                   \
      check_case(#size " counted up " #tag, i, up == clamp(starts[i] + count, LEAST(type), MOST(type)));     \
      check_case(#size " counted down " #tag, i, down == clamp(starts[i] - count, LEAST(type), MOST(type))); \
      print_counter("up", up);                                                                               \
      print_counter("down", down);                                                                           \
    }                                                                                                        \
  } while (0)

#define PATTERNS(type, tag, size)        \
  PATTERN(type, tag, size, SV_ALL, 1);   \
  PATTERN(type, tag, size, SV_ALL, 16);  \
  PATTERN(type, tag, size, SV_POW2, 3);  \
  PATTERN(type, tag, size, SV_VL7, 2);   \
  PATTERN(type, tag, size, SV_VL64, 15); \
  PATTERN(type, tag, size, SV_MUL3, 4)

#define SIZES(type, tag)  \
  PATTERNS(type, tag, b); \
  PATTERNS(type, tag, h); \
  PATTERNS(type, tag, w); \
  PATTERNS(type, tag, d)

static VECTOR void scalars(void) {
  SIZES(int32_t, s32);
  SIZES(uint32_t, u32);
  SIZES(int64_t, s64);
  SIZES(uint64_t, u64);
}

// A vector whose elements are all the same: its first and its last are looked at.
#define SAME(type, tag, name, vector, wanted_value)                                             \
  do {                                                                                          \
    const sv##type result_ = vector;                                                            \
    const type first_ = svlasta(svpfalse_b(), result_), last_ = svlastb(svpfalse_b(), result_); \
    const wide wanted_ = clamp(wanted_value, LEAST(type), MOST(type));                          \
    check_case(name " " #tag, i, first_ == wanted_ && last_ == wanted_);                        \
    print_counter(name, first_);                                                                \
  } while (0)

#define BY_VECTOR_COUNT(type, tag, size, bits)                                                                \
  SAME(type, tag, "vector up", svqinc##size##_pat_##tag(from, SV_ALL, 16), start + 16 * (wide)svcnt##size()); \
  SAME(type, tag, "vector down", svqdec##size##_pat_##tag(from, SV_VL8, 9),                                   \
       start - 9 * (wide)svcnt##size##_pat(SV_VL8));                                                          \
  SAME(type, tag, "vector by predicate up", svqincp(from, some), start + active);                             \
  SAME(type, tag, "vector by predicate down", svqdecp(from, some), start - active)
#define NO_VECTOR_COUNT(type, tag, size, bits)

#define VECTORS(type, tag, size, bits, by_count)                                               \
  static VECTOR void tag##_vectors(void) {                                                     \
    STARTS(type);                                                                              \
    mask_bytes mask;                                                                           \
    for (size_t i = 0; i < STARTS_COUNT; ++i) {                                                \
      fill_mask(mask, sizeof(type), RANDOM);                                                   \
      const type start = starts[i];                                                            \
      const sv##type from = svdup_##tag(start);                                                \
      const svbool_t some = predicate_of(mask);                                                \
      const wide active = (wide)svcntp_b##bits(svptrue_b##bits(), some);                       \
      (void)active;                                                                            \
      by_count(type, tag, size, bits);                                                         \
      SAME(type, tag, "sum", svqadd(from, svdup_##tag(starts[(i + 3) % STARTS_COUNT])),        \
           start + (wide)starts[(i + 3) % STARTS_COUNT]);                                      \
      SAME(type, tag, "difference", svqsub(from, svdup_##tag(starts[(i + 7) % STARTS_COUNT])), \
           start - (wide)starts[(i + 7) % STARTS_COUNT]);                                      \
      SAME(type, tag, "sum with a constant", svqadd(from, 120), start + (wide)120);            \
      SAME(type, tag, "difference with a constant", svqsub(from, 99), start - (wide)99);       \
    }                                                                                          \
  }
VECTORS(int8_t, s8, b, 8, NO_VECTOR_COUNT)
VECTORS(uint8_t, u8, b, 8, NO_VECTOR_COUNT)
VECTORS(int16_t, s16, h, 16, BY_VECTOR_COUNT)
VECTORS(uint16_t, u16, h, 16, BY_VECTOR_COUNT)
VECTORS(int32_t, s32, w, 32, BY_VECTOR_COUNT)
VECTORS(uint32_t, u32, w, 32, BY_VECTOR_COUNT)
VECTORS(int64_t, s64, d, 64, BY_VECTOR_COUNT)
VECTORS(uint64_t, u64, d, 64, BY_VECTOR_COUNT)

// Scalars that count the active elements of a predicate.
#define BY_PREDICATE(type, tag, bits)                                                                       \
  do {                                                                                                      \
    STARTS(type);                                                                                           \
    for (size_t i = 0; i < STARTS_COUNT; ++i) {                                                             \
      mask_bytes mask;                                                                                      \
      fill_mask(mask, bits / 8, RANDOM);                                                                    \
      const svbool_t some = predicate_of(mask);                                                             \
      const wide active = (wide)svcntp_b##bits(svptrue_b##bits(), some);                                    \
      const type up = OWN_WIDTH(svqincp_n_##tag##_b##bits(starts[i], some));                                \
      const type down = OWN_WIDTH(svqdecp_n_##tag##_b##bits(starts[i], some));                              \
      check_case("up by predicate " #tag, i, up == clamp(starts[i] + active, LEAST(type), MOST(type)));     \
      check_case("down by predicate " #tag, i, down == clamp(starts[i] - active, LEAST(type), MOST(type))); \
      print_counter("by predicate up", up);                                                                 \
      print_counter("by predicate down", down);                                                             \
    }                                                                                                       \
  } while (0)

#define BY_PREDICATES(type, tag) \
  BY_PREDICATE(type, tag, 8);    \
  BY_PREDICATE(type, tag, 16);   \
  BY_PREDICATE(type, tag, 32);   \
  BY_PREDICATE(type, tag, 64)

static VECTOR void predicates(void) {
  BY_PREDICATES(int32_t, s32);
  BY_PREDICATES(uint32_t, u32);
  BY_PREDICATES(int64_t, s64);
  BY_PREDICATES(uint64_t, u64);
}

int main(void) {
  scalars();
  predicates();
  s8_vectors();
  u8_vectors();
  s16_vectors();
  u16_vectors();
  s32_vectors();
  u32_vectors();
  s64_vectors();
  u64_vectors();
  return finish("saturating_counters");
}
