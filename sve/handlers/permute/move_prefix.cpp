// MOVPRFX.
#include "sve/handlers/permute/move_prefix.h"

#include <functional>

#include "sve/handlers/lane_loops.h"

using namespace quern;

aarch64_decode_rc sve_movprfx_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  unsigned char* const d = state->z[zd.num];
  const unsigned char *const predicate = state->p[pg.num], *const n = state->z[zn.num];
  by_size(zd.size, [&]<class T>(T) {
    if (pg.size == p_zeroing) {
      zero_lanes<T>(std::identity{}, d, predicate, n);
    } else {
      merge_lanes<T>(std::identity{}, d, predicate, n);
    }
  });
  return DECODE_OK;
}

aarch64_decode_rc sve_movprfx_zz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn) {
  std::memmove(state->z[zd.num], state->z[zn.num], VL_BYTES);
  return DECODE_OK;
}
