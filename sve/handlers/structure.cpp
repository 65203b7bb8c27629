// Loads and stores of structures of two, three or four elements.
#include "sve/handlers/structure.h"

#include "sve/handlers/memory_access.h"

using namespace quern;

namespace {

// Calls element(i, k, address) for each lane i and structure member k in the order of memory, and notes the address of
// each lane's last element.
template <class T, int N, class Element>
inline void each_element(std::uint64_t address, std::uint64_t* last_elements, Element element) {
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
    for (unsigned k = 0; k != N; ++k, address += sizeof(T)) element(i, k, address);
    last_elements[i] = address - sizeof(T);
  }
}

// Member k's register: past Z31 comes Z0.
unsigned char* member(cpu_state* state, aarch64_z_reg zt, unsigned k) { return state->z[(zt.num + k) % 32]; }

template <class T>
std::uint64_t address_of(const cpu_state* state, aarch64_i_rsp_reg base, long offset) {
  return value_of(state, base) + scaled(offset, sizeof(T));
}

}  // namespace

template <class T, class U, int N>
aarch64_decode_rc sve_ldN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset) {
  const unsigned char* p = state->p[pg.num];
  std::uint64_t last_elements[lane_count<U>];
  each_element<U, N>(address_of<T>(state, base, offset), last_elements,
                     [&](std::size_t i, unsigned k, std::uint64_t address) {
                       if (is_active<U>(p, i)) {
                         load_lane<T, U>(member(state, zt, k), i, address);
                       } else {
                         set_lane<U>(member(state, zt, k), i, U{0});
                       }
                     });
  memtrace_each<T, U>(state, last_elements, p, MEM_LOAD);
  return DECODE_OK;
}

template <class T, class U, int N>
aarch64_decode_rc sve_stN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset) {
  const unsigned char* p = state->p[pg.num];
  std::uint64_t last_elements[lane_count<U>];
  each_element<U, N>(address_of<T>(state, base, offset), last_elements,
                     [&](std::size_t i, unsigned k, std::uint64_t address) {
                       if (is_active<U>(p, i)) store_lane<T, U>(member(state, zt, k), i, address);
                     });
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
