// SEL, CPY and DUP. Copies of one value read it before they write, so the destination may be its source.
#include "sve/handlers/permute/element_move.h"

#include "sve/handlers/general_register.h"
#include "sve/handlers/lane_loops.h"

using namespace quern;

namespace {

// Zd = value, cut to the element, in every lane.
aarch64_decode_rc fill(cpu_state* state, aarch64_z_reg zd, std::uint64_t value) {
  by_size(zd.size, [&]<class T>(T) { fill_lanes(bytes_of(state, zd), static_cast<T>(value)); });
  return DECODE_OK;
}

// Zd = value, cut to the element, in the active lanes.
aarch64_decode_rc fill_active(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, std::uint64_t value) {
  by_size(zd.size,
          [&]<class T>(T) { merge_lanes<T>([=] { return value; }, bytes_of(state, zd), bytes_of(state, pg)); });
  return DECODE_OK;
}

template <class T>
T lane_or_zero(const unsigned char* n, std::size_t index) {
  return index < lane_count<T> ? lane<T>(n, index) : T{};
}

}  // namespace

aarch64_decode_rc sve_sel_zpzz(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  by_size(zd.size, [&]<class T>(T) {
    select_lanes<T>(bytes_of(state, zd), bytes_of(state, pg), bytes_of(state, zn), bytes_of(state, zm));
  });
  return DECODE_OK;
}

aarch64_decode_rc sve_cpy_zpi(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, int imm) {
  if (pg.size != p_zeroing) return fill_active(state, zd, pg, as_register(imm));
  by_size(zd.size, [&]<class T>(T) { zero_lanes<T>([=] { return imm; }, bytes_of(state, zd), bytes_of(state, pg)); });
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
  unsigned char *const d = bytes_of(state, zd), *const n = bytes_of(state, zn);
  if (zd.size == size_q)
    fill_groups(d, lane_or_zero<doubles>(n, index));
  else
    by_size(zd.size, [=]<class T>(T) { fill_lanes(d, lane_or_zero<T>(n, index)); });
  return DECODE_OK;
}

aarch64_decode_rc sve_dupm_zi(cpu_state* state, aarch64_z_reg zd, aarch64_sve_logical64_imm imm) {
  fill_lanes(bytes_of(state, zd), imm.value);
  return DECODE_OK;
}
