// Integer addition, subtraction, maximum and minimum.
#include "sve/handlers/integer/integer_arithmetic.h"

#include <functional>

#include "sve/handlers/integer/integer_families.h"
#include "sve/handlers/integer/trace_marker.h"

using namespace quern;

aarch64_decode_rc sve_add_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return each_zzz(state, zd, zn, zm, std::plus{});
}

aarch64_decode_rc sve_sub_zzz(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return each_zzz(state, zd, zn, zm, std::minus{});
}

namespace {

// Zdn = Zdn + immediate, every lane: the immediate extended, or cut, to the element.
aarch64_decode_rc add_immediate(cpu_state* state, aarch64_z_reg zdn, std::uint64_t immediate) {
  unsigned char* const d = state->z[zdn.num];
  by_size(zdn.dsize,
          [&]<class T>(T) { each_lane<T>([addend = static_cast<T>(immediate)](T a) { return a + addend; }, d, d); });
  return DECODE_OK;
}

}  // namespace

aarch64_decode_rc sve_add_zi(cpu_state* state, aarch64_z_reg zdn, unsigned int immediate) {
  if (zdn.dsize == size_b) mark_trace_region(immediate);
  return add_immediate(state, zdn, immediate);
}

aarch64_decode_rc sve_sub_zi(cpu_state* state, aarch64_z_reg zdn, unsigned int immediate) {
  return add_immediate(state, zdn, -std::uint64_t{immediate});
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
