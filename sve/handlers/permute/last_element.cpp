// LASTB and CLASTB.
#include "sve/handlers/permute/last_element.h"

#include "sve/handlers/general_register.h"
#include "sve/handlers/predicate/predicate_scan.h"
#include "sve/handlers/register_bytes.h"

using namespace quern;

namespace {

// The last active lane, or the vector's last when none is active.
template <class T>
T last_active_or_last(cpu_state* state, aarch64_p_reg pg, aarch64_z_reg zn) {
  const std::size_t last = last_element<T>(set_in{bytes_of(state, pg)});
  return lane<T>(bytes_of(state, zn), last == no_element ? lane_count<T> - 1 : last);
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
    const std::size_t last = last_element<T>(set_in{bytes_of(state, pg)});
    write_x(state, rdn, last == no_element ? static_cast<T>(read_x(state, rdn)) : lane<T>(bytes_of(state, zm), last));
  });
  return DECODE_OK;
}
