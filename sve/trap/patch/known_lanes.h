// What a run's code remembers, and hands on to the next run: of predicates, whether all lanes are active; and while it
// goes on, whether it is to end.
#pragma once

#include <cstdint>

#include "sve/state/cpu_state.h"
#include "sve/trap/patch/instructions.h"

namespace quern::known_lanes {

// A general register that thunks keep. Bit 4 * p + size is set where it is known that all lanes of that size are active
// in predicate p; bit 32 + 4 * p + size, where it is known that no other bit is set besides; bit 56 + p, where it is
// known that some lane of any size is inactive. The first are for the predicates that govern loads and arithmetic; the
// others for fewer. The highest two are for other things: bit 63 is set where the run is to end after its present word.
inline constexpr aarch64::reg keeper = aarch64::x20;
inline constexpr std::uint32_t sizes = 4, predicates = 8, filled_predicates = 6, first_filled = 32, first_partial = 56,
                               end_bit = 63;

constexpr aarch64::word active_bit(std::uint32_t predicate, std::uint32_t size) { return sizes * predicate + size; }
constexpr aarch64::word filled_bit(std::uint32_t predicate, std::uint32_t size) {
  return first_filled + active_bit(predicate, size);
}
constexpr aarch64::word partial_bit(std::uint32_t predicate) { return first_partial + predicate; }

// Puts instructions by which nothing is known of the predicate any more.
template <class Put>
constexpr void forget(std::uint32_t predicate, Put put) {
  const aarch64::word bit = active_bit(predicate, 0);
  if (predicate >= filled_predicates) return put(aarch64::clear_bits_x(keeper, keeper, bit, sizes));
  put(aarch64::clear_bits_twice_x(keeper, keeper, bit, sizes));
  put(aarch64::clear_bits_x(keeper, keeper, partial_bit(predicate), 1));
}
// Whether the word is MOV Pd.B, Pn.B, an alias of ORR.
constexpr bool is_move(aarch64::word w) {
  const aarch64::word n = w >> 5 & 15;
  return (w & 0xFFF0C210) == 0x25804000 && (w >> 16 & 15) == n && (w >> 10 & 15) == n;
}
// The first of two: what is known of one predicate to a register's low bits, and from there to what is known of
// another.
constexpr aarch64::word take(aarch64::reg x, aarch64::word bit, aarch64::word count) {
  return aarch64::ubfx_x(x, keeper, bit, count);
}
constexpr aarch64::word give(aarch64::reg x, aarch64::word bit, aarch64::word count) {
  return aarch64::bfi_x(keeper, x, bit, count);
}
// All lanes of the size are active, and so are wider ones, each of which goes by the first narrow one in it.
constexpr aarch64::word learn_active(std::uint32_t predicate, std::uint32_t size) {
  return aarch64::set_bits_x(keeper, keeper, active_bit(predicate, size), sizes - size);
}
constexpr aarch64::word learn_filled(std::uint32_t predicate, std::uint32_t size) {
  return aarch64::set_bits_x(keeper, keeper, filled_bit(predicate, size), 1);
}
// From what the search for an inactive lane of whatever size has found: its lowest bit is set if a lane of the widest
// size is inactive, and then one of each other size is.
constexpr aarch64::word learn_partial(std::uint32_t predicate, aarch64::reg found) {
  return aarch64::bfi_x(keeper, found, partial_bit(predicate), 1);
}

}  // namespace quern::known_lanes
