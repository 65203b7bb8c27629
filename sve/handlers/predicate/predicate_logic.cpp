// Logic of predicate bytes under a governing predicate.
#include "sve/handlers/predicate/predicate_logic.h"

#include <functional>

#include "sve/handlers/lane_loops.h"

using namespace quern;

namespace {

struct and_not {
  int operator()(int a, int b) const { return a & ~b; }
};
struct both_zero {
  bool operator()(int a, int b) const { return (a | b) == 0; }
};
struct bit_0_clear {
  int operator()(int a) const { return ~a & 1; }
};

// Pd = op(sources) under Pg, with its qualifier.
template <class Op, class... Source>
aarch64_decode_rc governed(Op op, cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, Source... source) {
  unsigned char* const d = bytes_of(state, pd);
  if (pg.size == p_zeroing)
    zero_lanes<std::uint8_t>(op, d, bytes_of(state, pg), bytes_of(state, source)...);
  else
    merge_lanes<std::uint8_t>(op, d, bytes_of(state, pg), bytes_of(state, source)...);
  return DECODE_OK;
}

}  // namespace

#define GOVERNED(name, op)                                                                                    \
  aarch64_decode_rc sve_##name##_pppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn, \
                                      aarch64_p_reg pm) {                                                     \
    return governed(op{}, state, pd, pg, pn, pm);                                                             \
  }
GOVERNED(and, std::bit_and<int>)
GOVERNED(eor, std::bit_xor<int>)
GOVERNED(bic, and_not)
GOVERNED(nor, both_zero)
#undef GOVERNED

// With one source in all places it is the predicates' MOV, which compilers use much, and needs that source once.
aarch64_decode_rc sve_orr_pppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm) {
  if (pg.num == pn.num && pn.num == pm.num) return governed(std::identity{}, state, pd, pg, pn);
  return governed(std::bit_or<int>{}, state, pd, pg, pn, pm);
}

aarch64_decode_rc sve_not_ppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn) {
  return governed(bit_0_clear{}, state, pd, pg, pn);
}

aarch64_decode_rc sve_sel_pppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm) {
  select_lanes<std::uint8_t>(bytes_of(state, pd), bytes_of(state, pg), bytes_of(state, pn), bytes_of(state, pm));
  return DECODE_OK;
}
