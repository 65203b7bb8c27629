// Integer division.
#include "sve/handlers/integer/divide.h"

#include "sve/handlers/register_loops.h"
#include "sve/state/integer_operations.h"

using namespace quern;

namespace {

using signed_quotients = element_types<std::int64_t, std::int32_t>;
using unsigned_quotients = element_types<std::uint64_t, std::uint32_t>;

template <class Types, class Op>
aarch64_decode_rc divide(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, Op op) {
  return merge_zpz<Types, inactive_lane::passed_over>(state, zdn, pg, zm, op);
}

constexpr auto by_second = [](auto a, auto b) { return quotient(a, b); };
constexpr auto by_first = [](auto a, auto b) { return quotient(b, a); };

}  // namespace

aarch64_decode_rc sve_sdiv_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<signed_quotients>(state, zdn, pg, zm, by_second);
}

aarch64_decode_rc sve_sdivr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<signed_quotients>(state, zdn, pg, zm, by_first);
}

aarch64_decode_rc sve_udiv_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<unsigned_quotients>(state, zdn, pg, zm, by_second);
}

aarch64_decode_rc sve_udivr_zpz(cpu_state* state, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return divide<unsigned_quotients>(state, zdn, pg, zm, by_first);
}
