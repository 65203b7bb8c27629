// SEL, CPY and DUP. Copies of one value read it before they write, so the destination may be its source.
#include "sve/handlers/permute/element_move.h"

#include "sve/handlers/general_register.h"
#include "sve/handlers/lane_loops.h"

using namespace quern;

namespace {

struct quadword {
  std::uint64_t low, high;
};

// Zd = value, cut to the element, in every lane.
aarch64_decode_rc fill(cpu_state* state, aarch64_z_reg zd, std::uint64_t value) {
  by_size(zd.size, [&]<class T>(T) { each_lane<T>([=] { return value; }, state->z[zd.num]); });
  return DECODE_OK;
}

// Zd = value, cut to the element, in the active lanes.
aarch64_decode_rc fill_active(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, std::uint64_t value) {
  by_size(zd.size, [&]<class T>(T) { merge_lanes<T>([=] { return value; }, state->z[zd.num], state->p[pg.num]); });
  return DECODE_OK;
}

template <class T>
void fill_with_lane(unsigned char* d, const unsigned char* n, std::size_t index) {
  const T value = index < lane_count<T> ? lane<T>(n, index) : T{};
  each_lane<T>([=] { return value; }, d);
}

}  // namespace

aarch64_decode_rc sve_sel_zpzz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  by_size(zd.size,
          [&]<class T>(T) { select_lanes<T>(state->z[zd.num], state->p[pg.num], state->z[zn.num], state->z[zm.num]); });
  return DECODE_OK;
}

aarch64_decode_rc sve_cpy_zpi(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, int imm) {
  if (pg.size != p_zeroing) return fill_active(state, zd, pg, as_register(imm));
  by_size(zd.size, [&]<class T>(T) { zero_lanes<T>([=] { return imm; }, state->z[zd.num], state->p[pg.num]); });
  return DECODE_OK;
}

aarch64_decode_rc sve_cpy_zpr(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_i_rsp_reg rn) {
  return fill_active(state, zd, pg, read_x(state, rn));
}

aarch64_decode_rc sve_cpy_zpv(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, unsigned int vn) {
  return fill_active(state, zd, pg, lane<std::uint64_t>(state->z[vn], 0));
}

aarch64_decode_rc sve_dup_zi(cpu_state* state, aarch64_z_reg zd, int imm) { return fill(state, zd, as_register(imm)); }

aarch64_decode_rc sve_dup_zr(cpu_state* state, aarch64_z_reg zd, aarch64_i_rsp_reg rn) {
  return fill(state, zd, read_x(state, rn));
}

aarch64_decode_rc sve_dup_zzi(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int index) {
  unsigned char *const d = state->z[zd.num], *const n = state->z[zn.num];
  if (zd.size == size_q)
    fill_with_lane<quadword>(d, n, index);
  else
    by_size(zd.size, [=]<class T>(T) { fill_with_lane<T>(d, n, index); });
  return DECODE_OK;
}

aarch64_decode_rc sve_dupm_zi(cpu_state* state, aarch64_z_reg zd, aarch64_sve_logical64_imm imm) {
  each_lane<std::uint64_t>([=] { return imm.value; }, state->z[zd.num]);
  return DECODE_OK;
}
