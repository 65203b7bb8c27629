// Loads and stores of structures of two, three or four elements.
#include "sve/handlers/memory/structure.h"

#include "sve/handlers/memory/structure_blocks.h"

using namespace quern;

namespace {

template <class T>
std::uint64_t address_of(const cpu_state* state, aarch64_i_rsp_reg base, long offset) {
  return value_of(state, base) + scaled(offset, sizeof(T));
}

// Whether all structures are to be accessed, and lie in one page.
template <class T, int N>
bool are_block(auto vectors, const unsigned char* p, std::uint64_t address) {
  return in_one_page(address, N * VL_BYTES) && all_active<std::make_unsigned_t<T>>(vectors, p);
}

// What most calls don't need is in functions of its own, so that the others save no registers.

template <class T, int N>
[[gnu::noinline]] void load_each(cpu_state* state, unsigned zt, const unsigned char* p, std::uint64_t address) {
  const members<N> to(state, zt);
  note_lanes(address, N * sizeof(T), MEM_LOAD, p, sizeof(T), lane_count<T>);
  for (std::size_t i = 0; i != lane_count<T>; ++i, address += N * sizeof(T)) {
    for (unsigned k = 0; k != N; ++k) {
      if (is_active<T>(p, i)) {
        load_lane<T, T>(to.z[k], i, address + k * sizeof(T));
      } else {
        set_lane<T>(to.z[k], i, T{0});
      }
    }
  }
}

template <class T, int N>
[[gnu::noinline]] void store_each(cpu_state* state, unsigned zt, const unsigned char* p, std::uint64_t address) {
  const members<N> from(state, zt);
  note_lanes(address, N * sizeof(T), MEM_STORE, p, sizeof(T), lane_count<T>);
  for (std::size_t i = 0; i != lane_count<T>; ++i, address += N * sizeof(T)) {
    if (!is_active<T>(p, i)) continue;
    for (unsigned k = 0; k != N; ++k) store_lane<T, T>(from.z[k], i, address + k * sizeof(T));
  }
}

// Reports one access for each active structure: that of its last element.
template <class T, class U, int N>
[[gnu::noinline]] void trace_structures(const cpu_state* state, const unsigned char* p, std::uint64_t address,
                                        memaccess_type_t kind) {
  std::uint64_t last_elements[lane_count<U>];
  for (std::size_t i = 0; i != lane_count<U>; ++i) last_elements[i] = address + (i * N + N - 1) * sizeof(T);
  memtrace_each<T, U>(state, last_elements, p, kind);
}

}  // namespace

template <class T, class U, int N>
aarch64_decode_rc sve_ldN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset) {
  const auto load = [](auto vectors, cpu_state* s, unsigned z, const unsigned char* p, std::uint64_t from) {
    if (!are_block<T, N>(vectors, p, from)) [[unlikely]]
      return load_each<T, N>(s, z, p, from);
    note_access(from, sizeof(T), MEM_LOAD);
    load_structures<T>(vectors, members<N>(s, z), from);
  };
  const unsigned char* p = state->p[pg.num];
  const std::uint64_t address = address_of<T>(state, base, offset);
  by_widest_vectors(load, state, zt.num, p, address);
  if (enable_trace) trace_structures<T, U, N>(state, p, address, MEM_LOAD);
  return DECODE_OK;
}

template <class T, class U, int N>
aarch64_decode_rc sve_stN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset) {
  const auto store = [](auto vectors, cpu_state* s, unsigned z, const unsigned char* p, std::uint64_t to) {
    if (!are_block<T, N>(vectors, p, to)) [[unlikely]]
      return store_each<T, N>(s, z, p, to);
    note_access(to, sizeof(T), MEM_STORE);
    store_structures<T>(vectors, members<N>(s, z), to);
  };
  const unsigned char* p = state->p[pg.num];
  const std::uint64_t address = address_of<T>(state, base, offset);
  by_widest_vectors(store, state, zt.num, p, address);
  if (enable_trace) trace_structures<T, U, N>(state, p, address, MEM_STORE);
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
