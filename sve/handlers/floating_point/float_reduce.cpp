// Floating-point reductions of a vector to a scalar.
#include "sve/handlers/floating_point/float_families.h"
#include "sve/handlers/floating_point/host_float.h"

using namespace quern;

namespace {

// op over the neighbours of a and b: lane i of the result is from lanes 2i and 2i + 1.
template <class Op, lane_group T>
T pairs(Op op, T a, T b) {
  return op(even_lanes(a, b), odd_lanes(a, b));
}

// op over all lanes, by pairs of neighbours, then pairs of those, and so on. Inactive lanes are quiet NaNs, which op
// passes over for a number.
template <lane_group T, class Op>
lane_of<T> reduce(Op op, const unsigned char* pg, const unsigned char* z) {
  const T neutral = in_each_lane<T>(format_of<T>::default_nan);
  T level[lane_count<T>];
  for (std::size_t i = 0; i != lane_count<T>; ++i)
    level[i] = select(active_mask(lane<T>(pg, i)), lane<T>(z, i), neutral);
  for (std::size_t n = lane_count<T> / 2; n != 0; n /= 2)
    for (std::size_t i = 0; i != n; ++i) level[i] = pairs(op, level[2 * i], level[2 * i + 1]);
  T last = level[0];
  for (int n = group_lanes<T>; n != 1; n /= 2) last = pairs(op, last, last);
  return last[0];
}

template <class Op>
aarch64_decode_rc reduce_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn, Op op) {
  host_fp fp(*state);
  float_types::by_size(zn.size, [&]<class T>(T) {
    const auto with_unit = [&](T a, T b) { return op(fp, a, b); };
    set_scalar(state->z[vd], reduce<T>(with_unit, bytes_of(state, pg), bytes_of(state, zn)));
  });
  return DECODE_OK;
}

}  // namespace

aarch64_decode_rc sve_fmaxnmv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce_vpz(state, vd, pg, zn, [](host_fp& fp, auto a, auto b) { return fp.fmaxnm(a, b); });
}

aarch64_decode_rc sve_fminnmv_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce_vpz(state, vd, pg, zn, [](host_fp& fp, auto a, auto b) { return fp.fminnm(a, b); });
}
