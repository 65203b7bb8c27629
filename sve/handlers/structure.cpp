// Loads and stores of structures of two, three or four elements.
#include "sve/handlers/structure.h"

#include "sve/handlers/memory_access.h"

using namespace quern;

namespace {

// A structure's registers: past Z31 comes Z0.
template <int N>
struct members {
  unsigned char* z[N];

  members(cpu_state* state, aarch64_z_reg zt) {
    for (unsigned k = 0; k != N; ++k) z[k] = state->z[(zt.num + k) % 32];
  }
};

template <class T>
std::uint64_t address_of(const cpu_state* state, aarch64_i_rsp_reg base, long offset) {
  return value_of(state, base) + scaled(offset, sizeof(T));
}

}  // namespace

template <class T, class U, int N>
aarch64_decode_rc sve_ldN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset) {
  const members<N> to(state, zt);
  const unsigned char* p = state->p[pg.num];
  std::uint64_t last_elements[lane_count<U>];
  std::uint64_t address = address_of<T>(state, base, offset);
  note_lanes(address, N * sizeof(T), MEM_LOAD, p, sizeof(U), lane_count<U>);
  for (std::size_t i = 0; i != lane_count<U>; ++i, address += N * sizeof(T)) {
    last_elements[i] = address + (N - 1) * sizeof(T);
    for (unsigned k = 0; k != N; ++k) {
      if (is_active<U>(p, i)) {
        load_lane<T, U>(to.z[k], i, address + k * sizeof(T));
      } else {
        set_lane<U>(to.z[k], i, U{0});
      }
    }
  }
  memtrace_each<T, U>(state, last_elements, p, MEM_LOAD);
  return DECODE_OK;
}

template <class T, class U, int N>
aarch64_decode_rc sve_stN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset) {
  const members<N> from(state, zt);
  const unsigned char* p = state->p[pg.num];
  std::uint64_t last_elements[lane_count<U>];
  std::uint64_t address = address_of<T>(state, base, offset);
  note_lanes(address, N * sizeof(T), MEM_STORE, p, sizeof(U), lane_count<U>);
  for (std::size_t i = 0; i != lane_count<U>; ++i, address += N * sizeof(T)) {
    last_elements[i] = address + (N - 1) * sizeof(T);
    if (!is_active<U>(p, i)) continue;
    for (unsigned k = 0; k != N; ++k) store_lane<T, U>(from.z[k], i, address + k * sizeof(T));
  }
  memtrace_each<T, U>(state, last_elements, p, MEM_STORE);
  return DECODE_OK;
}

// The family's instance, and its two instructions: imm counts N whole vectors, the index counts elements.
#define STRUCTURE(family, name, T, N)                                                                               \
  template aarch64_decode_rc family<T, T, N>(cpu_state*, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, long);    \
  aarch64_decode_rc sve_##name##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base, \
                                      int imm) {                                                                    \
    return family<T, T, N>(state, zt, pg, base, long{imm} * N * static_cast<long>(lane_count<T>));                  \
  }                                                                                                                 \
  aarch64_decode_rc sve_##name##_scaled_zprr(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg,                  \
                                             aarch64_i_rsp_reg base, aarch64_i_reg index) {                         \
    return family<T, T, N>(state, zt, pg, base, static_cast<long>(value_of(state, index)));                         \
  }
#define STRUCTURES(letter, T)                \
  STRUCTURE(sve_ldN_zpri, ld2##letter, T, 2) \
  STRUCTURE(sve_ldN_zpri, ld3##letter, T, 3) \
  STRUCTURE(sve_ldN_zpri, ld4##letter, T, 4) \
  STRUCTURE(sve_stN_zpri, st2##letter, T, 2) \
  STRUCTURE(sve_stN_zpri, st3##letter, T, 3) \
  STRUCTURE(sve_stN_zpri, st4##letter, T, 4)

STRUCTURES(b, signed char)
STRUCTURES(h, short)
STRUCTURES(w, int)
STRUCTURES(d, long)

#undef STRUCTURES
#undef STRUCTURE
