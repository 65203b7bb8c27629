// Integer addition, subtraction, maximum and minimum.
#include "sve/handlers/integer/integer_arithmetic.h"

#include <functional>

#include "sve/handlers/integer/trace_marker.h"
#include "sve/handlers/register_loops.h"
#include "sve/state/integer_operations.h"

using namespace quern;

aarch64_decode_rc sve_add_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return each_zzz(state, zd, zn, zm, std::plus{});
}

aarch64_decode_rc sve_sub_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return each_zzz(state, zd, zn, zm, std::minus{});
}

aarch64_decode_rc sve_add_zi(cpu_state* state, aarch64_z_reg zdn, unsigned int immediate) {
  if (zdn.dsize == size_b) mark_trace_region(immediate);
  return each_zi(state, zdn, immediate, std::plus{});
}

aarch64_decode_rc sve_sub_zi(cpu_state* state, aarch64_z_reg zdn, unsigned int immediate) {
  return each_zi(state, zdn, immediate, std::minus{});
}

aarch64_decode_rc sve_add_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, std::plus{});
}

aarch64_decode_rc sve_sub_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, std::minus{});
}

aarch64_decode_rc sve_smax_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, signed_maximum{});
}

aarch64_decode_rc sve_smin_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, signed_minimum{});
}

aarch64_decode_rc sve_umax_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, maximum{});
}

aarch64_decode_rc sve_umin_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, minimum{});
}
