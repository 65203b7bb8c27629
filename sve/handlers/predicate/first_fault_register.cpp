// Moves of the first-fault register.
#include "sve/handlers/predicate/first_fault_register.h"

#include <cstring>
#include <functional>

#include "sve/handlers/lane_loops.h"
#include "sve/state/vector_copy.h"

using namespace quern;

aarch64_decode_rc sve_rdffr_p(cpu_state* state, aarch64_p_reg pd) {
  copy_vector(bytes_of(state, pd), state->ffr);
  return DECODE_OK;
}

aarch64_decode_rc sve_rdffr_pp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg) {
  each_lane<std::uint64_t>(std::bit_and{}, bytes_of(state, pd), state->ffr, bytes_of(state, pg));
  return DECODE_OK;
}

aarch64_decode_rc sve_wrffr_p(cpu_state* state, aarch64_p_reg pn) {
  copy_vector(state->ffr, bytes_of(state, pn));
  return DECODE_OK;
}

aarch64_decode_rc sve_setffr(cpu_state* state) {
  std::memset(state->ffr, 1, VL_BYTES);
  return DECODE_OK;
}
