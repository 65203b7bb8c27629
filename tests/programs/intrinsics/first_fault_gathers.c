// Gathers and contiguous loads that run into an unmapped page: of a list of places of which one can't be read,
// first-fault loads (LDFF1) take those before it and FFR tells how many; non-fault loads (LDNF1) may even begin at it.
#include "guarded_pages.h"
#include "vectors.h"

enum { PLACES = 200, READABLE = 4096 };

static uint8_t* readable;  // READABLE bytes, and an unmapped page behind them
static uint64_t out[PLACES], judged[PLACES];

// Which of the places is the bad one; none for PLACES.
static const size_t bad_places[] = {1, 2, 7, 31, 32, 33, 63, 64, 65, 100, PLACES - 1, PLACES};

// Offsets from `readable`, in units of `scale` bytes and for accesses of `size`, the bad one just behind the end.
static SCALAR void make_places(uint64_t* places, size_t bad, size_t size, size_t scale) {
  for (size_t i = 0; i < PLACES; ++i) places[i] = next_random() % (READABLE - size) / scale;
  if (bad < PLACES) places[bad] = READABLE / scale;
}

static SCALAR uint64_t element_at(const uint8_t* at, size_t size, bool is_signed) {
  uint64_t value = 0;
  for (size_t i = 0; i < size; ++i) value |= (uint64_t)at[i] << 8 * i;
  const uint64_t sign = (uint64_t)1 << (8 * size - 1);
  return is_signed ? (value ^ sign) - sign : value;
}

// Takes what can be read from place i on, and tells how many that are. A processor may give up earlier than it must,
// which the next turn makes good.
#define SPECULATE(bits, load)                               \
  ({                                                        \
    const svbool_t pg = svwhilelt_b##bits##_u64(i, PLACES); \
    svsetffr();                                             \
    const svuint##bits##_t loaded = load;                   \
    const svbool_t good = svrdffr_z(pg);                    \
    svst1(good, (uint##bits##_t*)out + i, loaded);          \
    svcntp_b##bits(pg, good);                               \
  })

// name, element size, signed, scale, the load of the offsets `places`
#define GATHERS                                                                                                    \
  GATHER(ldff1d, 8, false, 1, svldff1_gather_u64offset_u64(pg, base, places))                                      \
  GATHER(ldff1d_scaled, 8, false, 8, svldff1_gather_u64index_u64(pg, base, places))                                \
  GATHER(ldff1d_bases, 8, false, 1, svldff1_gather_u64base_u64(pg, svadd_x(pg, places, (uint64_t)readable)))       \
  GATHER(ldff1d_bases_imm, 8, false, 1,                                                                            \
         svldff1_gather_u64base_offset_u64(pg, svadd_x(pg, places, (uint64_t)readable - 24), 24))                  \
  GATHER(ldff1d_sxtw, 8, false, 8, svldff1_gather_s64index_u64(pg, base, svextw_x(pg, svreinterpret_s64(places)))) \
  GATHER(ldff1d_uxtw, 8, false, 1, svldff1_gather_u64offset_u64(pg, base, svextw_x(pg, places)))                   \
  GATHER(ldff1w, 4, false, 1, svldff1uw_gather_u64offset_u64(pg, (uint32_t*)base, places))                         \
  GATHER(ldff1w_uxtw, 4, false, 4, svldff1uw_gather_u64index_u64(pg, (uint32_t*)base, svextw_x(pg, places)))       \
  GATHER(ldff1sw, 4, true, 4, svldff1sw_gather_u64index_u64(pg, (int32_t*)base, places))                           \
  GATHER(ldff1h, 2, false, 2, svldff1uh_gather_u64index_u64(pg, (uint16_t*)base, places))                          \
  GATHER(ldff1sh, 2, true, 1, svldff1sh_gather_u64offset_u64(pg, (int16_t*)base, places))                          \
  GATHER(ldff1sh_bases, 2, true, 1, svldff1sh_gather_u64base_u64(pg, svadd_x(pg, places, (uint64_t)readable)))     \
  GATHER(ldff1b, 1, false, 1, svldff1ub_gather_u64offset_u64(pg, readable, places))                                \
  GATHER(ldff1sb_uxtw, 1, true, 1, svldff1sb_gather_u64offset_u64(pg, (int8_t*)base, svextw_x(pg, places)))

// The same in elements of 32 bits.
#define NARROW_GATHERS                                                                                                \
  GATHER(ldff1w_words, 4, false, 1, svldff1_gather_u32offset_u32(pg, (uint32_t*)base, places))                        \
  GATHER(ldff1w_words_scaled, 4, false, 4, svldff1_gather_u32index_u32(pg, (uint32_t*)base, places))                  \
  GATHER(ldff1w_words_sxtw, 4, false, 4, svldff1_gather_s32index_u32(pg, (uint32_t*)base, svreinterpret_s32(places))) \
  GATHER(ldff1sh_words, 2, true, 2, svldff1sh_gather_u32index_u32(pg, (int16_t*)base, places))                        \
  GATHER(ldff1h_words, 2, false, 1, svldff1uh_gather_u32offset_u32(pg, (uint16_t*)base, places))                      \
  GATHER(ldff1sb_words, 1, true, 1, svldff1sb_gather_s32offset_u32(pg, (int8_t*)base, svreinterpret_s32(places)))     \
  GATHER(ldff1b_words, 1, false, 1, svldff1ub_gather_u32offset_u32(pg, readable, places))

#define FUNCTION(name, bits, load)                                                                           \
  static VECTOR size_t name(const uint64_t* offsets, size_t i) {                                             \
    const uint64_t* const base = (const void*)readable;                                                      \
    const svuint##bits##_t places = svld1(svwhilelt_b##bits##_u64(i, PLACES), (uint##bits##_t*)offsets + i); \
    (void)base, (void)places;                                                                                \
    return SPECULATE(bits, load);                                                                            \
  }
#define GATHER(name, size, is_signed, scale, load) FUNCTION(name, 64, load)
GATHERS
#undef GATHER
#define GATHER(name, size, is_signed, scale, load) FUNCTION(name, 32, load)
NARROW_GATHERS
#undef GATHER

static const struct {
  const char* name;
  size_t (*gather)(const uint64_t* offsets, size_t i);
  size_t lane, size, scale;
  bool is_signed;
} gathers[] = {
#define GATHER(name, size, is_signed, scale, load) {#name, name, 8, size, scale, is_signed},
    GATHERS
#undef GATHER
#define GATHER(name, size, is_signed, scale, load) {#name, name, 4, size, scale, is_signed},
        NARROW_GATHERS
#undef GATHER
};

static SCALAR void judge(size_t g, const uint64_t* places, size_t count) {
  for (size_t i = 0; i < PLACES; ++i) judged[i] = 0;
  for (size_t i = 0; i < count; ++i) {
    const uint64_t value = element_at(readable + places[i] * gathers[g].scale, gathers[g].size, gathers[g].is_signed);
    if (gathers[g].lane == 8)
      judged[i] = value;
    else
      ((uint32_t*)judged)[i] = (uint32_t)value;
  }
}

// Gathers up to the bad place, which is never the first active one: that would be the program's own fault.
static void gather_up_to(size_t g, size_t bad) {
  uint64_t places[PLACES], narrow[PLACES];
  make_places(places, bad, gathers[g].size, gathers[g].scale);
  for (size_t i = 0; i < PLACES; ++i) ((uint32_t*)narrow)[i] = (uint32_t)places[i];
  for (size_t i = 0; i < PLACES; ++i) out[i] = 0;
  size_t taken = 0, turns = 0;
  while (taken < bad && ++turns <= PLACES) taken += gathers[g].gather(gathers[g].lane == 8 ? places : narrow, taken);
  judge(g, places, bad);
  check_case(gathers[g].name, bad, taken == bad && same_bytes(out, judged, sizeof out));
}

// Contiguous loads from so many bytes before the end: what they give and FFR agree with what can be read.
#define LOADS                                               \
  LOAD_AT(ldff1b, 8, 1, svldff1_u8(all, at))                \
  LOAD_AT(ldff1sb, 16, 1, svldff1sb_u16(all, (int8_t*)at))  \
  LOAD_AT(ldff1h, 16, 2, svldff1_u16(all, (uint16_t*)at))   \
  LOAD_AT(ldff1sh, 32, 2, svldff1sh_u32(all, (int16_t*)at)) \
  LOAD_AT(ldff1w, 32, 4, svldff1_u32(all, (uint32_t*)at))   \
  LOAD_AT(ldff1sw, 64, 4, svldff1sw_u64(all, (int32_t*)at)) \
  LOAD_AT(ldff1d, 64, 8, svldff1_u64(all, (uint64_t*)at))   \
  LOAD_AT(ldnf1b, 8, 1, svldnf1_u8(all, at))                \
  LOAD_AT(ldnf1sb, 32, 1, svldnf1sb_u32(all, (int8_t*)at))  \
  LOAD_AT(ldnf1h, 16, 2, svldnf1_u16(all, (uint16_t*)at))   \
  LOAD_AT(ldnf1w, 64, 4, svldnf1uw_u64(all, (uint32_t*)at)) \
  LOAD_AT(ldnf1d, 64, 8, svldnf1_u64(all, (uint64_t*)at))

#define LOAD_AT(name, bits, size, load)                                                      \
  static VECTOR void name##_at(size_t elements) {                                            \
    const uint8_t* const at = readable + READABLE - elements * size;                         \
    const svbool_t all = svptrue_b##bits();                                                  \
    const size_t lanes = svcntb() * 8 / bits, most = elements < lanes ? elements : lanes;    \
    svsetffr();                                                                              \
    const svuint##bits##_t loaded = load;                                                    \
    const svbool_t good = svrdffr();                                                         \
    const size_t count = svcntp_b##bits(all, good);                                          \
    uint##bits##_t elements_out[VECTOR_BYTES * 8 / bits];                                    \
    svst1(good, elements_out, loaded);                                                       \
    const bool is_signed = #name[4] == 's' || (#name[5] == 's');                             \
    bool right = count <= most;                                                              \
    for (size_t i = 0; i < count && right; ++i) {                                            \
      right = elements_out[i] == (uint##bits##_t)element_at(at + i * size, size, is_signed); \
    }                                                                                        \
    check_case(#name, elements, right);                                                      \
  }
LOADS
#undef LOAD_AT

static void (*const loads[])(size_t elements) = {
#define LOAD_AT(name, bits, size, load) name##_at,
    LOADS
#undef LOAD_AT
};

int main(void) {
  readable = end_of_readable(1) - READABLE;
  fill_random(readable, READABLE);
  for (size_t g = 0; g < sizeof gathers / sizeof *gathers; ++g) {
    for (size_t b = 0; b < sizeof bad_places / sizeof *bad_places; ++b) gather_up_to(g, bad_places[b]);
    print_digest(gathers[g].name, out, sizeof out);
  }
  for (size_t l = 0; l < sizeof loads / sizeof *loads; ++l) {
    for (size_t elements = 1; elements < 300; elements += elements < 70 ? 1 : 17) loads[l](elements);
  }
  return finish("first_fault_gathers");
}
