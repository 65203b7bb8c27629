// Gathers and scatters.
#include "sve/handlers/memory/gather_scatter.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// An offset or index in a lane: the low bits, taken as an X, extended to 64 bits as X's signedness says.
template <class X>
std::uint64_t extended(auto lane_value) {
  return static_cast<std::uint64_t>(static_cast<X>(lane_value));
}

// The active lanes, with their addresses written down for who wants to know them.
template <memaccess_type_t kind, class T, class U>
void move_noted(cpu_state* state, unsigned char* z, const unsigned char* p, const unsigned char* vector,
                auto address_of) {
  std::uint64_t* const addresses = lane_addresses;  // of the active lanes
  note_addresses(sizeof(T), kind, p, sizeof(U));
  const destination_kept<kind, 1> kept({z});
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    if (is_active<U>(p, i)) {
      addresses[i] = address_of(lane<U>(vector, i));
      move_lane<kind, T, U>(z, i, addresses[i]);
    } else {
      skip_lane<kind, U>(z, i);
    }
  }
  memtrace_each<T, U>(state, addresses, p, kind);
}

// All lanes.
template <memaccess_type_t kind, class T, class U>
void move_all(unsigned char* z, const unsigned char* vector, auto address_of) {
  const destination_kept<kind, 1> kept({z});
#pragma GCC unroll 8
  for (std::size_t i = 0; i != lane_count<U>; ++i) move_lane<kind, T, U>(z, i, address_of(lane<U>(vector, i)));
}

// One element for each active lane of Zt, in order, at address_of(the lane of `vector`). A load's Zt may be that
// vector: each lane's address is formed before the lane is written.
template <memaccess_type_t kind, class T, class U>
aarch64_decode_rc move_scattered(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg vector,
                                 auto address_of) {
  unsigned char *const z = bytes_of(state, zt), *const p = bytes_of(state, pg), *const n = bytes_of(state, vector);
  if (!accesses_are_noted && !enable_trace && all_active<U>(p)) {
    move_all<kind, T, U>(z, n, address_of);
  } else {
    move_noted<kind, T, U>(state, z, p, n, address_of);
  }
  return DECODE_OK;
}

}  // namespace

// The forms of the address. X is the type of an offset or index: its width tells the bits of the lane that are read,
// its signedness extends them.

#define BY_ADDRESS(kind, name, T, U)                                                                          \
  aarch64_decode_rc sve_##name##_zpzi(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn, \
                                      unsigned int imm) {                                                     \
    return move_scattered<kind, T, U>(state, zt, pg, zn,                                                      \
                                      [offset = scaled(imm, sizeof(T))](U n) { return n + offset; });         \
  }
#define BY_OFFSET(kind, name, T, U, X)                                                                        \
  aarch64_decode_rc sve_##name##_zpzr(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm, \
                                      aarch64_i_rsp_reg base) {                                               \
    return move_scattered<kind, T, U>(state, zt, pg, zm,                                                      \
                                      [x = read_x(state, base)](U m) { return x + extended<X>(m); });         \
  }
#define BY_INDEX(kind, name, T, U, X)                                                                             \
  aarch64_decode_rc sve_##name##_scaled_zprz(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg,                \
                                             aarch64_i_rsp_reg base, aarch64_z_reg zm) {                          \
    return move_scattered<kind, T, U>(state, zt, pg, zm,                                                          \
                                      [x = read_x(state, base)](U m) { return x + extended<X>(m) * sizeof(T); }); \
  }

#define WORDS(kind, name, M, T)                                \
  BY_ADDRESS(kind, name, T, std::uint32_t)                     \
  BY_OFFSET(kind, name##_sxtw, T, std::uint32_t, std::int32_t) \
  BY_OFFSET(kind, name##_uxtw, T, std::uint32_t, std::uint32_t)
#define SCALED_WORDS(kind, name, M, T)                        \
  WORDS(kind, name, M, T)                                     \
  BY_INDEX(kind, name##_sxtw, T, std::uint32_t, std::int32_t) \
  BY_INDEX(kind, name##_uxtw, T, std::uint32_t, std::uint32_t)
#define DOUBLEWORDS(kind, name, M, T)                          \
  BY_ADDRESS(kind, name, T, std::uint64_t)                     \
  BY_OFFSET(kind, name, T, std::uint64_t, std::uint64_t)       \
  BY_OFFSET(kind, name##_sxtw, T, std::uint64_t, std::int32_t) \
  BY_OFFSET(kind, name##_uxtw, T, std::uint64_t, std::uint32_t)
#define SCALED_DOUBLEWORDS(kind, name, M, T)                  \
  DOUBLEWORDS(kind, name, M, T)                               \
  BY_INDEX(kind, name, T, std::uint64_t, std::uint64_t)       \
  BY_INDEX(kind, name##_sxtw, T, std::uint64_t, std::int32_t) \
  BY_INDEX(kind, name##_uxtw, T, std::uint64_t, std::uint32_t)
#include "sve/handlers/memory/gather_scatter.def"

#undef BY_INDEX
#undef BY_OFFSET
#undef BY_ADDRESS
