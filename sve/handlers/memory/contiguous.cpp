// Contiguous loads and stores of one register.
#include "sve/handlers/memory/contiguous.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// What most calls don't need is in functions of its own, so that the others save no registers.

template <class T, class U>
[[gnu::noinline]] aarch64_decode_rc load_apart(cpu_state* state, unsigned char* z, unsigned char* pg,
                                               std::uint64_t address) {
  load_elements<T, U>(z, pg, address);
  trace_contiguous<T, U>(state, pg, address, MEM_LOAD);
  return DECODE_OK;
}

template <class T, class U>
aarch64_decode_rc load(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  const auto access = [](auto vectors, cpu_state* s, unsigned char* z, unsigned char* p, std::uint64_t from) {
    if (!is_block<T, U>(vectors, p, from)) [[unlikely]]
      return load_apart<T, U>(s, z, p, from);
    load_block<T, U>(vectors, z, from);
    trace_contiguous<T, U>(s, p, from, MEM_LOAD);
    return DECODE_OK;
  };
  return by_widest_vectors(access, state, state->z[zt.num], state->p[pg.num], address);
}

template <class T, class U>
[[gnu::noinline]] aarch64_decode_rc store_apart(cpu_state* state, const unsigned char* z, unsigned char* pg,
                                                std::uint64_t address) {
  store_elements<T, U>(z, pg, address);
  trace_contiguous<T, U>(state, pg, address, MEM_STORE);
  return DECODE_OK;
}

template <class T, class U>
aarch64_decode_rc store(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  const auto access = [](auto vectors, cpu_state* s, const unsigned char* z, unsigned char* p, std::uint64_t to) {
    if (!is_block<T, U>(vectors, p, to)) [[unlikely]]
      return store_apart<T, U>(s, z, p, to);
    store_block<T, U>(vectors, z, to);
    trace_contiguous<T, U>(s, p, to, MEM_STORE);
    return DECODE_OK;
  };
  return by_widest_vectors(access, state, state->z[zt.num], state->p[pg.num], address);
}

}  // namespace

#define CONTIGUOUS(access, name, T, U)                                                                              \
  aarch64_decode_rc sve_##name##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base, \
                                      int imm) {                                                                    \
    return access<T, U>(state, zt, pg, value_of(state, base) + scaled(imm, lane_count<U> * sizeof(T)));             \
  }                                                                                                                 \
  aarch64_decode_rc sve_##name##_scaled_zprr(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg,                  \
                                             aarch64_i_rsp_reg base, aarch64_i_reg index) {                         \
    return access<T, U>(state, zt, pg, value_of(state, base) + value_of(state, index) * sizeof(T));                 \
  }

CONTIGUOUS(load, ld1b, std::uint8_t, std::uint8_t)
CONTIGUOUS(load, ld1b_h, std::uint8_t, std::uint16_t)
CONTIGUOUS(load, ld1b_s, std::uint8_t, std::uint32_t)
CONTIGUOUS(load, ld1b_d, std::uint8_t, std::uint64_t)
CONTIGUOUS(load, ld1h, std::uint16_t, std::uint16_t)
CONTIGUOUS(load, ld1h_s, std::uint16_t, std::uint32_t)
CONTIGUOUS(load, ld1h_d, std::uint16_t, std::uint64_t)
CONTIGUOUS(load, ld1w, std::uint32_t, std::uint32_t)
CONTIGUOUS(load, ld1w_d, std::uint32_t, std::uint64_t)
CONTIGUOUS(load, ld1d, std::uint64_t, std::uint64_t)
CONTIGUOUS(load, ld1sb_h, std::int8_t, std::uint16_t)
CONTIGUOUS(load, ld1sb_s, std::int8_t, std::uint32_t)
CONTIGUOUS(load, ld1sb_d, std::int8_t, std::uint64_t)
CONTIGUOUS(load, ld1sh_s, std::int16_t, std::uint32_t)
CONTIGUOUS(load, ld1sh_d, std::int16_t, std::uint64_t)
CONTIGUOUS(load, ld1sw_d, std::int32_t, std::uint64_t)

CONTIGUOUS(store, st1b, std::uint8_t, std::uint8_t)
CONTIGUOUS(store, st1b_h, std::uint8_t, std::uint16_t)
CONTIGUOUS(store, st1b_s, std::uint8_t, std::uint32_t)
CONTIGUOUS(store, st1b_d, std::uint8_t, std::uint64_t)
CONTIGUOUS(store, st1h, std::uint16_t, std::uint16_t)
CONTIGUOUS(store, st1h_s, std::uint16_t, std::uint32_t)
CONTIGUOUS(store, st1h_d, std::uint16_t, std::uint64_t)
CONTIGUOUS(store, st1w, std::uint32_t, std::uint32_t)
CONTIGUOUS(store, st1w_d, std::uint32_t, std::uint64_t)
CONTIGUOUS(store, st1d, std::uint64_t, std::uint64_t)

CONTIGUOUS(load, ldnt1b, std::uint8_t, std::uint8_t)
CONTIGUOUS(load, ldnt1h, std::uint16_t, std::uint16_t)
CONTIGUOUS(load, ldnt1w, std::uint32_t, std::uint32_t)
CONTIGUOUS(load, ldnt1d, std::uint64_t, std::uint64_t)
CONTIGUOUS(store, stnt1b, std::uint8_t, std::uint8_t)
CONTIGUOUS(store, stnt1h, std::uint16_t, std::uint16_t)
CONTIGUOUS(store, stnt1w, std::uint32_t, std::uint32_t)
CONTIGUOUS(store, stnt1d, std::uint64_t, std::uint64_t)

#undef CONTIGUOUS
