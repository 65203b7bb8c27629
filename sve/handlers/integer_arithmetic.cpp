// Unpredicated and merging integer arithmetic and logic of whole elements.
#include "sve/handlers/integer_arithmetic.h"

#include <functional>

#include "sve/handlers/lanes.h"

using namespace quern;

aarch64_decode_rc sve_add_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  by_size(zd.size,
          [&]<class T>(T) { each_lane<T>(std::plus{}, state->z[zd.num], state->z[zn.num], state->z[zm.num]); });
  return DECODE_OK;
}
