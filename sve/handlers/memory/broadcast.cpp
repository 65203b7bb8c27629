// Loads of one memory element into every active lane.
#include "sve/handlers/memory/broadcast.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// The element is read again for every active lane.
template <class T, class U>
aarch64_decode_rc broadcast(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  unsigned char* z = state->z[zt.num];
  note_access(address, sizeof(T), MEM_LOAD);
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    if (is_active<U>(state->p[pg.num], i)) {
      load_lane<T, U>(z, i, address);
    } else {
      set_lane<U>(z, i, U{0});
    }
  }
  return DECODE_OK;
}

}  // namespace

#define BROADCAST(name, T, U)                                                                                       \
  aarch64_decode_rc sve_##name##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base, \
                                      unsigned int imm) {                                                           \
    return broadcast<T, U>(state, zt, pg, value_of(state, base) + scaled(imm, sizeof(T)));                          \
  }

BROADCAST(ld1rb, std::uint8_t, std::uint8_t)
BROADCAST(ld1rb_h, std::uint8_t, std::uint16_t)
BROADCAST(ld1rb_s, std::uint8_t, std::uint32_t)
BROADCAST(ld1rb_d, std::uint8_t, std::uint64_t)
BROADCAST(ld1rh, std::uint16_t, std::uint16_t)
BROADCAST(ld1rh_s, std::uint16_t, std::uint32_t)
BROADCAST(ld1rh_d, std::uint16_t, std::uint64_t)
BROADCAST(ld1rw, std::uint32_t, std::uint32_t)
BROADCAST(ld1rw_d, std::uint32_t, std::uint64_t)
BROADCAST(ld1rd, std::uint64_t, std::uint64_t)
BROADCAST(ld1rsb_h, std::int8_t, std::uint16_t)
BROADCAST(ld1rsb_s, std::int8_t, std::uint32_t)
BROADCAST(ld1rsb_d, std::int8_t, std::uint64_t)
BROADCAST(ld1rsh_s, std::int16_t, std::uint32_t)
BROADCAST(ld1rsh_d, std::int16_t, std::uint64_t)
BROADCAST(ld1rsw_d, std::int32_t, std::uint64_t)

#undef BROADCAST
