// MOVPRFX.
#include "sve/handlers/permute/move_prefix.h"

#include <functional>

#include "sve/handlers/lane_loops.h"
#include "sve/state/vector_copy.h"

using namespace quern;

aarch64_decode_rc sve_movprfx_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  unsigned char* const d = bytes_of(state, zd);
  const unsigned char *const predicate = bytes_of(state, pg), *const n = bytes_of(state, zn);
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
  copy_vector(bytes_of(state, zd), bytes_of(state, zn));
  return DECODE_OK;
}
