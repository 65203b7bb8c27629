// Loads of one memory element into every active lane.
#include "sve/handlers/memory/broadcast.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// The element is read again for every active lane.
template <class T, class U>
void read_for_each(unsigned char* z, const unsigned char* p, std::uint64_t address) {
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    if (is_active<U>(p, i)) {
      move_lane<MEM_LOAD, T, U>(z, i, address);
    } else {
      skip_lane<MEM_LOAD, U>(z, i);
    }
  }
}

// The same where all lanes are active, without a look at each.
template <class T, class U>
void read_for_all(unsigned char* z, std::uint64_t address) {
#pragma GCC unroll 16
  for (std::size_t i = 0; i != lane_count<U>; ++i) move_lane<MEM_LOAD, T, U>(z, i, address);
}

// Lanes are cleared before the read that may fault. In a function of its own, so that the others save no registers.
template <class T, class U>
[[gnu::noinline]] aarch64_decode_rc broadcast_later(unsigned char* z, const unsigned char* p, std::uint64_t address) {
  const destination_kept<MEM_LOAD, 1> kept({z});
  read_for_each<T, U>(z, p, address);
  return DECODE_OK;
}

template <class T, class U>
aarch64_decode_rc broadcast(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  note_access(address, sizeof(T), MEM_LOAD);
  unsigned char* const z = state->z[zt.num];
  const unsigned char* const p = state->p[pg.num];
  if (all_active<U>(p)) {
    read_for_all<T, U>(z, address);
  } else if (is_active<U>(p, 0)) {
    read_for_each<T, U>(z, p, address);
  } else {
    return broadcast_later<T, U>(z, p, address);
  }
  return DECODE_OK;
}

}  // namespace

#define ELEMENT(letters, M, T, U)                                                                  \
  aarch64_decode_rc sve_ld1r##letters##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, \
                                             aarch64_i_rsp_reg base, unsigned int imm) {           \
    return broadcast<T, U>(state, zt, pg, read_x(state, base) + scaled(imm, M));                   \
  }
#include "sve/handlers/memory/elements.def"
