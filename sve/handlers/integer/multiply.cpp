// Integer multiplication, with and without addition.
#include "sve/handlers/integer/multiply.h"

#include "sve/handlers/general_register.h"
#include "sve/handlers/register_loops.h"
#include "sve/state/integer_operations.h"

using namespace quern;

aarch64_decode_rc sve_mul_zi(cpu_state* state, aarch64_z_reg zdn, int immediate) {
  return each_zi(state, zdn, as_register(immediate), [](auto a, auto factor) { return multiply(a, factor); });
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
