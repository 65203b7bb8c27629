// BRKA, BRKB, BRKN, BRKPB and PNEXT. A break is found by a search; then the bytes before it are a run of ones, and what
// remains is predicate logic.
#include "sve/handlers/predicate/predicate_break.h"

#include <cstring>
#include <functional>

#include "sve/handlers/lane_loops.h"
#include "sve/handlers/predicate/predicate_result.h"

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
  unsigned char *const d = bytes_of(state, pd), *const governing = bytes_of(state, pg);
  const unsigned char* const run = first_elements<byte>(run_length(governing, bytes_of(state, pn), at_break));
  if (pg.size == p_zeroing)
    zero_lanes<byte>(std::identity{}, d, governing, run);
  else
    merge_lanes<byte>(std::identity{}, d, governing, run);
  return DECODE_OK;
}

aarch64_decode_rc sve_brkn(cpu_state* state, aarch64_p_reg pdm, aarch64_p_reg pg, aarch64_p_reg pn, bool sets_flags) {
  unsigned char* const d = bytes_of(state, pdm);
  if (!last_active_byte_nonzero(bytes_of(state, pg), bytes_of(state, pn))) std::memset(d, 0, VL_BYTES);
  if (sets_flags)
    set_flags(state,
              {.n = is_active<byte>(d, 0), .z = !any_element<byte>(set_in{d}), .c = !is_active<byte>(d, VL_BYTES - 1)});
  return DECODE_OK;
}

aarch64_decode_rc sve_brkpb(cpu_state* state, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn, aarch64_p_reg pm,
                            bool sets_flags) {
  unsigned char *const d = bytes_of(state, pd), *const governing = bytes_of(state, pg);
  const bool goes_on = last_active_byte_nonzero(governing, bytes_of(state, pn));
  const std::size_t length = goes_on ? run_length(governing, bytes_of(state, pm), break_byte::clear) : 0;
  const active_ends ends = ends_of<byte>(governing);
  zero_lanes<byte>(std::identity{}, d, governing, first_elements<byte>(length));
  if (sets_flags) set_flags<byte>(state, ends, d);
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
  unsigned char *const d = bytes_of(state, pdn), *const governing = bytes_of(state, pg);
  by_size(pdn.dsize, [&]<class T>(T) {
    const active_ends ends = ends_of<T>(governing);
    const std::size_t last = last_element<T>(set_in{d});
    const std::size_t next = last == no_element ? ends.first : first_element<T>(set_in{governing}, last + 1);
    std::memset(d, 0, VL_BYTES);
    if (next != no_element) set_lane<T>(d, next, T{1});
    set_flags(state, {.n = next != no_element && next == ends.first,
                      .z = next == no_element,
                      .c = next == no_element || next != ends.last});
  });
  return DECODE_OK;
}
