// Gathers and scatters.
#include "sve/handlers/memory/gather_scatter.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// Lane i of U, its low bits taken as an X and extended to 64 bits as X's signedness says.
template <class U, class X>
std::uint64_t extended(const unsigned char* z, std::size_t i) {
  return static_cast<std::uint64_t>(static_cast<X>(lane<U>(z, i)));
}

// Zt may be the vector of addresses: each lane's address is formed before the lane is written.
template <class T, class U, class Address>
aarch64_decode_rc gather(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, Address address_of) {
  unsigned char* z = state->z[zt.num];
  const unsigned char* p = state->p[pg.num];
  std::uint64_t* const addresses = lane_addresses;  // of the active lanes
  note_addresses(sizeof(T), MEM_LOAD, p, sizeof(U));
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    if (is_active<U>(p, i)) {
      addresses[i] = address_of(i);
      load_lane<T, U>(z, i, addresses[i]);
    } else {
      set_lane<U>(z, i, U{0});
    }
  }
  memtrace_each<T, U>(state, addresses, p, MEM_LOAD);
  return DECODE_OK;
}

template <class T, class U, class Address>
aarch64_decode_rc scatter(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, Address address_of) {
  const unsigned char* p = state->p[pg.num];
  std::uint64_t* const addresses = lane_addresses;  // of the active lanes
  note_addresses(sizeof(T), MEM_STORE, p, sizeof(U));
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    if (!is_active<U>(p, i)) continue;
    addresses[i] = address_of(i);
    store_lane<T, U>(state->z[zt.num], i, addresses[i]);
  }
  memtrace_each<T, U>(state, addresses, p, MEM_STORE);
  return DECODE_OK;
}

}  // namespace

// An address form defines the handler of a name, whose access is a gather or a scatter of elements T in lanes U. X is
// the type of a vector operand's lane: its width tells the bits that are read, its signedness extends them.

#define ZPZI(access, name, T, U)                                                                                      \
  aarch64_decode_rc sve_##name##_zpzi(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,         \
                                      unsigned int imm) {                                                             \
    return access<T, U>(state, zt, pg,                                                                                \
                        [=](std::size_t i) { return extended<U, U>(state->z[zn.num], i) + scaled(imm, sizeof(T)); }); \
  }
#define ZPZR_OF(access, name, T, U, X)                                                                               \
  aarch64_decode_rc sve_##name##_zpzr(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,        \
                                      aarch64_i_rsp_reg base) {                                                      \
    return access<T, U>(state, zt, pg,                                                                               \
                        [=](std::size_t i) { return value_of(state, base) + extended<U, X>(state->z[zm.num], i); }); \
  }
#define ZPRZ_OF(access, name, T, U, X)                                                             \
  aarch64_decode_rc sve_##name##_scaled_zprz(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, \
                                             aarch64_i_rsp_reg base, aarch64_z_reg zm) {           \
    return access<T, U>(state, zt, pg, [=](std::size_t i) {                                        \
      return value_of(state, base) + extended<U, X>(state->z[zm.num], i) * sizeof(T);              \
    });                                                                                            \
  }

#define ZPZR(access, name, T, U) ZPZR_OF(access, name, T, U, std::uint64_t)
#define SXTW_ZPZR(access, name, T, U) ZPZR_OF(access, name##_sxtw, T, U, std::int32_t)
#define UXTW_ZPZR(access, name, T, U) ZPZR_OF(access, name##_uxtw, T, U, std::uint32_t)
#define ZPRZ(access, name, T, U) ZPRZ_OF(access, name, T, U, std::uint64_t)
#define SXTW_ZPRZ(access, name, T, U) ZPRZ_OF(access, name##_sxtw, T, U, std::int32_t)
#define UXTW_ZPRZ(access, name, T, U) ZPRZ_OF(access, name##_uxtw, T, U, std::uint32_t)

// The names, by element and lane. Bytes have no scaled forms.
#define BYTES_IN_WORDS(form)                                                                          \
  form(gather, ld1b_s, std::uint8_t, std::uint32_t) form(gather, ld1sb_s, std::int8_t, std::uint32_t) \
      form(scatter, st1b_s, std::uint8_t, std::uint32_t)
#define OTHERS_IN_WORDS(form)                                                                              \
  form(gather, ld1h_s, std::uint16_t, std::uint32_t) form(gather, ld1sh_s, std::int16_t, std::uint32_t)    \
      form(gather, ld1w, std::uint32_t, std::uint32_t) form(scatter, st1h_s, std::uint16_t, std::uint32_t) \
          form(scatter, st1w, std::uint32_t, std::uint32_t)
#define BYTES_IN_DOUBLEWORDS(form)                                                                    \
  form(gather, ld1b_d, std::uint8_t, std::uint64_t) form(gather, ld1sb_d, std::int8_t, std::uint64_t) \
      form(scatter, st1b_d, std::uint8_t, std::uint64_t)
#define OTHERS_IN_DOUBLEWORDS(form)                                                                            \
  form(gather, ld1h_d, std::uint16_t, std::uint64_t) form(gather, ld1sh_d, std::int16_t, std::uint64_t)        \
      form(gather, ld1w_d, std::uint32_t, std::uint64_t) form(gather, ld1sw_d, std::int32_t, std::uint64_t)    \
          form(gather, ld1d, std::uint64_t, std::uint64_t) form(scatter, st1h_d, std::uint16_t, std::uint64_t) \
              form(scatter, st1w_d, std::uint32_t, std::uint64_t) form(scatter, st1d, std::uint64_t, std::uint64_t)

BYTES_IN_WORDS(ZPZI)
BYTES_IN_WORDS(SXTW_ZPZR)
BYTES_IN_WORDS(UXTW_ZPZR)
OTHERS_IN_WORDS(ZPZI)
OTHERS_IN_WORDS(SXTW_ZPZR)
OTHERS_IN_WORDS(UXTW_ZPZR)
OTHERS_IN_WORDS(SXTW_ZPRZ)
OTHERS_IN_WORDS(UXTW_ZPRZ)
BYTES_IN_DOUBLEWORDS(ZPZI)
BYTES_IN_DOUBLEWORDS(ZPZR)
BYTES_IN_DOUBLEWORDS(SXTW_ZPZR)
BYTES_IN_DOUBLEWORDS(UXTW_ZPZR)
OTHERS_IN_DOUBLEWORDS(ZPZI)
OTHERS_IN_DOUBLEWORDS(ZPZR)
OTHERS_IN_DOUBLEWORDS(SXTW_ZPZR)
OTHERS_IN_DOUBLEWORDS(UXTW_ZPZR)
OTHERS_IN_DOUBLEWORDS(ZPRZ)
OTHERS_IN_DOUBLEWORDS(SXTW_ZPRZ)
OTHERS_IN_DOUBLEWORDS(UXTW_ZPRZ)

#undef OTHERS_IN_DOUBLEWORDS
#undef BYTES_IN_DOUBLEWORDS
#undef OTHERS_IN_WORDS
#undef BYTES_IN_WORDS
#undef UXTW_ZPRZ
#undef SXTW_ZPRZ
#undef ZPRZ
#undef UXTW_ZPZR
#undef SXTW_ZPZR
#undef ZPZR
#undef ZPRZ_OF
#undef ZPZR_OF
#undef ZPZI
