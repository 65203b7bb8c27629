// Loads of one memory element into every active lane.
#include "sve/handlers/memory/broadcast.h"

#include "sve/handlers/memory/memory_access.h"

using namespace quern;

namespace {

// The element is read again for every active lane.
template <class T, class U>
aarch64_decode_rc broadcast(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, std::uint64_t address) {
  unsigned char* const z = state->z[zt.num];
  note_access(address, sizeof(T), MEM_LOAD);
  const destination_kept<MEM_LOAD, 1> kept({z});
  for (std::size_t i = 0; i != lane_count<U>; ++i) {
    if (is_active<U>(state->p[pg.num], i)) {
      move_lane<MEM_LOAD, T, U>(z, i, address);
    } else {
      skip_lane<MEM_LOAD, U>(z, i);
    }
  }
  return DECODE_OK;
}

}  // namespace

#define LOAD(letters, T, U)                                                                        \
  aarch64_decode_rc sve_ld1r##letters##_zpri(cpu_state* state, aarch64_z_reg zt, aarch64_p_reg pg, \
                                             aarch64_i_rsp_reg base, unsigned int imm) {           \
    return broadcast<T, U>(state, zt, pg, read_x(state, base) + scaled(imm, sizeof(T)));           \
  }
#define STORE(letters, T, U)
#include "sve/handlers/memory/elements.def"
