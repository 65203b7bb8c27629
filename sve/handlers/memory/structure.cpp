// Loads and stores of structures of two, three or four elements.
#include "sve/handlers/memory/structure.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// A structure's registers, from Z`first` on: past Z31 comes Z0.
template <int N>
struct members {
  unsigned char* z[N];

  members(cpu_state* state, unsigned first) {
    for (unsigned k = 0; k != N; ++k) z[k] = state->z[(first + k) % 32];
  }
};

// Whether all structures are to be accessed, and lie in one page.
template <class T, int N>
bool are_block(const unsigned char* p, std::uint64_t address) {
  return is_in_page(address, N * VL_BYTES) && all_active<T>(p);
}

// All of them at once: the first element goes alone, so that a fault is its own.
template <memaccess_type_t kind, class T, int N>
void move_all(const members<N> registers, std::uint64_t address) {
  note_access(address, sizeof(T), kind);
  move_lane<kind, T, T>(registers.z[0], 0, address);
  auto* const elements = reinterpret_cast<unsigned char*>(address);
#pragma GCC ivdep  // no application's memory is the register file
  for (std::size_t i = 0; i != lane_count<T>; ++i) {
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k) move_element<kind, T, T>(registers.z[k], i, elements, i * N + k);
  }
}

// The active ones, element by element.
template <memaccess_type_t kind, class T, int N>
void move_each(const members<N> registers, const unsigned char* p, std::uint64_t address) {
  note_lanes(address, N * sizeof(T), kind, p, sizeof(T), lane_count<T>);
  const destination_kept<kind, N> kept(registers.z);
  for (std::size_t i = 0; i != lane_count<T>; ++i, address += N * sizeof(T)) {
    const bool active = is_active<T>(p, i);
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k) {
      if (active) {
        move_lane<kind, T, T>(registers.z[k], i, address + k * sizeof(T));
      } else {
        skip_lane<kind, T>(registers.z[k], i);
      }
    }
  }
}

// Structures that lie in one page, active or not, where none but the first active one can fault.

// The active ones: all are read, and the lanes of the others cleared.
template <class T, int N>
void load_in_page(const members<N> registers, const unsigned char* p, std::uint64_t address) {
  using U = std::make_unsigned_t<T>;
  const auto* const elements = reinterpret_cast<const unsigned char*>(address);
  const std::size_t first = first_element<U>(set_in{p});
  if (first == no_element) {
    for (unsigned char* const z : registers.z) std::memset(z, 0, VL_BYTES);
    return;
  }
  if (first != 0) {
    const destination_kept<MEM_LOAD, N> kept(registers.z);
    for (unsigned char* const z : registers.z) std::memset(z, 0, first * sizeof(U));
    settle();
    asm volatile("" : : "r"(lane<T>(elements, first * N)));
  } else {
    asm volatile("" : : "r"(lane<T>(elements, 0)));
  }
  settle();
#pragma GCC ivdep  // no application's memory is the register file
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k)
      set_lane<U>(registers.z[k], i, lane<U>(elements, i * N + k) & active_mask<U>(p, i));
  }
}

// The active ones: all are put together apart from memory, and copied by words of the predicate, most of which have
// either no active lane, or nothing but.
template <class T, int N>
void store_in_page(const members<N> registers, const unsigned char* p, std::uint64_t address) {
  using U = std::make_unsigned_t<T>;
  auto* const elements = reinterpret_cast<unsigned char*>(address);
  const std::size_t first = first_element<U>(set_in{p});
  if (first == no_element) return;
  move_lane<MEM_STORE, T, T>(registers.z[0], first, address + first * N * sizeof(T));
  unsigned char structures[N * VL_BYTES];
#pragma GCC ivdep
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k) set_lane<U>(structures, i * N + k, lane<U>(registers.z[k], i));
  }
  for (std::size_t j = first * sizeof(U) / 8; j != predicate_words; ++j) {
    const std::uint64_t active = lane<std::uint64_t>(p, j) & ones_apiece<U>;
    if (active == 0) continue;
    const std::size_t from = 8 * N * j;
    if (active == ones_apiece<U>) {
      std::memcpy(elements + from, structures + from, 8 * N);
      continue;
    }
#pragma GCC unroll 8
    for (std::size_t at = 0; at != 8; at += sizeof(U))
      if ((active >> 8 * at & 1) != 0) std::memcpy(elements + from + N * at, structures + from + N * at, N * sizeof(U));
  }
}

// Putting a few doublewords together costs more than it saves.
template <memaccess_type_t kind, class T>
constexpr bool goes_in_page = kind == MEM_LOAD ? loads_inactive_elements : sizeof(T) != 8;

template <memaccess_type_t kind, class T, int N>
bool move_if_in_page(const members<N> registers, const unsigned char* p, std::uint64_t address) {
  if (!is_in_page(address, N * VL_BYTES)) return false;
  note_lanes(address, N * sizeof(T), kind, p, sizeof(T), lane_count<T>);
  if constexpr (kind == MEM_LOAD) {
    load_in_page<T>(registers, p, address);
  } else {
    store_in_page<T>(registers, p, address);
  }
  settle();
  return true;
}

// What most calls don't need is in functions of its own, so that the others save no registers.

// Reports one access for each active structure: that of its last element.
template <memaccess_type_t kind, class T, class U, int N>
[[gnu::noinline]] void trace_structures(const cpu_state* state, const unsigned char* p, std::uint64_t address) {
  std::uint64_t last_elements[lane_count<U>];
  for (std::size_t i = 0; i != lane_count<U>; ++i) last_elements[i] = address + (i * N + N - 1) * sizeof(T);
  memtrace_each<T, U>(state, last_elements, p, kind);
}

template <memaccess_type_t kind, class T, class U, int N>
[[gnu::noinline]] aarch64_decode_rc move_some(cpu_state* state, unsigned zt, const unsigned char* p,
                                              std::uint64_t address) {
  const members<N> registers(state, zt);
  bool is_done = false;
  if constexpr (goes_in_page<kind, T>) is_done = move_if_in_page<kind, T>(registers, p, address);
  if (!is_done) move_each<kind, T>(registers, p, address);
  if (enable_trace) trace_structures<kind, T, U, N>(state, p, address);
  return DECODE_OK;
}

// Always a part of the two functions below: between functions the operands would be moved to other registers.
template <memaccess_type_t kind, class T, class U, int N>
[[gnu::always_inline]] inline aarch64_decode_rc move_structures(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg,
                                                                aarch64_i_rsp_reg base, long offset) {
  const unsigned char* const p = bytes_of(state, pg);
  const std::uint64_t address = read_x(state, base) + scaled(offset, sizeof(T));
  if (!are_block<T, N>(p, address)) [[unlikely]]
    return move_some<kind, T, U, N>(state, zt.num, p, address);
  move_all<kind, T>(members<N>(state, zt.num), address);
  if (enable_trace) trace_structures<kind, T, U, N>(state, p, address);
  return DECODE_OK;
}

}  // namespace

template <class T, class U, int N>
aarch64_decode_rc sve_ldN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset) {
  return move_structures<MEM_LOAD, T, U, N>(state, zt, pg, base, offset);
}

template <class T, class U, int N>
aarch64_decode_rc sve_stN_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                               long offset) {
  return move_structures<MEM_STORE, T, U, N>(state, zt, pg, base, offset);
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
    return family<T, T, N>(state, zt, pg, base, static_cast<long>(read_x(state, index)));                           \
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
