// BRKA, BRKB, BRKN, BRKPB and PNEXT. A break is found by a search; then the bytes before it are a run of ones, and what
// remains is predicate logic.
#include "sve/handlers/predicate/predicate_break.h"

#include <cstring>
#include <functional>

#include "sve/handlers/lane_loops.h"
#include "sve/handlers/predicate/nzcv.h"
#include "sve/handlers/predicate/predicate_flags.h"
#include "sve/handlers/predicate/predicate_scan.h"

using namespace quern;

namespace {

using byte = std::uint8_t;

// Whether the run of ones takes in the byte that breaks it.
enum class break_byte { set, clear };

// The length of the run of ones that the first byte active in pg and set in `breaks` ends: the whole predicate when
// there is no such byte.
std::size_t run_length(const unsigned char* pg, const unsigned char* breaks, break_byte at_break) {
  const std::size_t first = first_element<byte>(set_in_both{pg, breaks});
  return first == no_element ? VL_BYTES : first + (at_break == break_byte::set ? 1 : 0);
}

// Whether the byte of `bytes` at pg's last active one is not zero. The whole byte counts, not bit 0 alone.
bool last_active_byte_nonzero(const unsigned char* pg, const unsigned char* bytes) {
  const std::size_t last = last_element<byte>(set_in{pg});
  return last != no_element && bytes[last] != 0;
}

aarch64_decode_rc break_run(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                            break_byte at_break) {
  unsigned char *const d = state->p[pd.num], *const governing = state->p[pg.num];
  vector_result run;
  set_first_elements<byte>(run.bytes, run_length(governing, state->p[pn.num], at_break));
  if (pg.size == p_zeroing)
    zero_lanes<byte>(std::identity{}, d, governing, run.bytes);
  else
    merge_lanes<byte>(std::identity{}, d, governing, run.bytes);
  return DECODE_OK;
}

aarch64_decode_rc sve_brkn(cpu_state* state, aarch64_p_reg pdm, aarch64_p_reg pg, aarch64_p_reg pn, bool sets_flags) {
  unsigned char* const d = state->p[pdm.num];
  if (!last_active_byte_nonzero(state->p[pg.num], state->p[pn.num])) std::memset(d, 0, VL_BYTES);
  if (sets_flags)
    set_flags(state, {.n = is_active<byte>(d, 0),
                      .z = first_element<byte>(set_in{d}) == no_element,
                      .c = !is_active<byte>(d, VL_BYTES - 1)});
  return DECODE_OK;
}

aarch64_decode_rc sve_brkpb(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn, aarch64_p_reg pm,
                            bool sets_flags) {
  const unsigned char* const governing = state->p[pg.num];
  const bool goes_on = last_active_byte_nonzero(governing, state->p[pn.num]);
  vector_result r;
  set_first_elements<byte>(r.bytes, goes_on ? run_length(governing, state->p[pm.num], break_byte::clear) : 0);
  zero_lanes<byte>(std::identity{}, r.bytes, governing, r.bytes);
  if (sets_flags) test_flags<signed char>(state, governing, r.bytes);
  r.copy_to(state->p[pd.num]);
  return DECODE_OK;
}

}  // namespace

aarch64_decode_rc sve_brka_ppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn) {
  return break_run(state, pd, pg, pn, break_byte::set);
}

aarch64_decode_rc sve_brkb_ppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn) {
  return break_run(state, pd, pg, pn, break_byte::clear);
}

aarch64_decode_rc sve_brkn_ppp(cpu_state* state, aarch64_p_reg pdm, aarch64_p_reg pg, aarch64_p_reg pn) {
  return sve_brkn(state, pdm, pg, pn, false);
}

aarch64_decode_rc sve_brkns_ppp(cpu_state* state, aarch64_p_reg pdm, aarch64_p_reg pg, aarch64_p_reg pn) {
  return sve_brkn(state, pdm, pg, pn, true);
}

aarch64_decode_rc sve_brkpb_pppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                                 aarch64_p_reg pm) {
  return sve_brkpb(state, pd, pg, pn, pm, false);
}

aarch64_decode_rc sve_brkpbs_pppp(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                                  aarch64_p_reg pm) {
  return sve_brkpb(state, pd, pg, pn, pm, true);
}

aarch64_decode_rc sve_pnext_pp(cpu_state* state, aarch64_p_reg pdn, aarch64_p_reg pg) {
  unsigned char *const d = state->p[pdn.num], *const governing = state->p[pg.num];
  by_size(pdn.dsize, [&]<class T>(T) {
    const std::size_t last = last_element<T>(set_in{d});
    const std::size_t next = first_element<T>(set_in{governing}, last == no_element ? 0 : last + 1);
    vector_result r{};
    if (next != no_element) set_lane<T>(r.bytes, next, T{1});
    test_flags<T>(state, governing, r.bytes);
    r.copy_to(d);
  });
  return DECODE_OK;
}
