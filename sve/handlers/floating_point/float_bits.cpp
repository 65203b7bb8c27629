// Floating-point instructions that only move bits.
#include "sve/handlers/floating_point/float_bits.h"

#include "sve/handlers/lane_loops.h"

using namespace quern;

namespace {

// op on each active lane's bits. The instruction forms have no other size here.
template <class Op>
aarch64_decode_rc move_bits(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn, Op op) {
  unsigned char* const d = state->z[zd.num];
  if (zd.size == size_s) merge_lanes<std::uint32_t>(op, d, state->p[pg.num], state->z[zn.num]);
  if (zd.size == size_d) merge_lanes<std::uint64_t>(op, d, state->p[pg.num], state->z[zn.num]);
  return DECODE_OK;
}

template <class T>
inline constexpr T sign_bit = T{1} << (8 * sizeof(T) - 1);

}  // namespace

aarch64_decode_rc sve_fabs_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return move_bits(state, zd, pg, zn, []<class T>(T x) { return x & ~sign_bit<T>; });
}

aarch64_decode_rc sve_fneg_zpz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return move_bits(state, zd, pg, zn, []<class T>(T x) { return x ^ sign_bit<T>; });
}

aarch64_decode_rc sve_fdup_zi(cpu_state* state, aarch64_z_reg zd, aarch64_sve_fp_dup_imm imm) {
  unsigned char* const d = state->z[zd.num];
  if (zd.size == size_s) {
    each_lane<std::uint32_t>([=] { return imm.single; }, d);
  } else if (zd.size == size_d) {
    each_lane<std::uint64_t>([=] { return imm.dbl; }, d);
  } else {
    each_lane<std::uint16_t>([=] { return imm.half; }, d);
  }
  return DECODE_OK;
}
