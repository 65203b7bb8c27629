// Integer multiplication, with and without addition.
#include "sve/handlers/integer/multiply.h"

#include "sve/handlers/integer/integer_families.h"

using namespace quern;

namespace {

// Zdn = op(Zdn, second, third), active lanes.
template <class Op>
aarch64_decode_rc merge_zpzz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg second,
                             aarch64_z_reg third, Op op) {
  unsigned char* const d = state->z[zdn.num];
  by_size(zdn.dsize,
          [&]<class T>(T) { merge_lanes<T>(op, d, state->p[pg.num], d, state->z[second.num], state->z[third.num]); });
  return DECODE_OK;
}

}  // namespace

aarch64_decode_rc sve_mul_zi(cpu_state* state, aarch64_z_reg zdn, int immediate) {
  unsigned char* const d = state->z[zdn.num];
  by_size(zdn.dsize, [&]<class T>(T) {
    each_lane<T>([factor = static_cast<T>(immediate)](T a) { return multiply(a, factor); }, d, d);
  });
  return DECODE_OK;
}

aarch64_decode_rc sve_mul_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_zpz(state, zdn, pg, zm, [](auto a, auto b) { return multiply(a, b); });
}

aarch64_decode_rc sve_mla_zpzz(cpu_state* state, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  return merge_zpzz(state, zda, pg, zn, zm, [](auto a, auto n, auto m) { return a + multiply(n, m); });
}

aarch64_decode_rc sve_mls_zpzz(cpu_state* state, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  return merge_zpzz(state, zda, pg, zn, zm, [](auto a, auto n, auto m) { return a - multiply(n, m); });
}

aarch64_decode_rc sve_mad_zpzz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                               aarch64_z_reg za) {
  return merge_zpzz(state, zdn, pg, zm, za, [](auto n, auto m, auto a) { return a + multiply(n, m); });
}

aarch64_decode_rc sve_msb_zpzz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                               aarch64_z_reg za) {
  return merge_zpzz(state, zdn, pg, zm, za, [](auto n, auto m, auto a) { return a - multiply(n, m); });
}
