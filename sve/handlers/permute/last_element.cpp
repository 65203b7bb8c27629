// LASTB and CLASTB.
#include "sve/handlers/permute/last_element.h"

#include "sve/handlers/general_register.h"
#include "sve/handlers/predicate/predicate_scan.h"

using namespace quern;

namespace {

// The last active lane, or the vector's last when none is active.
template <class T>
T last_active_or_last(const cpu_state* state, aarch64_p_reg pg, aarch64_z_reg zn) {
  const std::size_t last = last_element<T>(set_in{state->p[pg.num]});
  return lane<T>(state->z[zn.num], last == no_element ? lane_count<T> - 1 : last);
}

}  // namespace

aarch64_decode_rc sve_lastb_rpz(cpu_state* state, aarch64_i_reg rd, aarch64_p_reg pg, aarch64_z_reg zn) {
  by_size(zn.size, [&]<class T>(T) { write_x(state, rd, last_active_or_last<T>(state, pg, zn)); });
  return DECODE_OK;
}

aarch64_decode_rc sve_lastb_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  by_size(zn.size, [&]<class T>(T) { set_scalar<T>(state->z[vd], last_active_or_last<T>(state, pg, zn)); });
  return DECODE_OK;
}

aarch64_decode_rc sve_clastb_rpz(cpu_state* state, aarch64_i_reg rdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  by_size(zm.size, [&]<class T>(T) {
    const std::size_t last = last_element<T>(set_in{state->p[pg.num]});
    write_x(state, rdn, last == no_element ? static_cast<T>(read_x(state, rdn)) : lane<T>(state->z[zm.num], last));
  });
  return DECODE_OK;
}
