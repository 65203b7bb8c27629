// Blocks of whole structures of N elements, between memory and N registers.
#pragma once

#include <cstdint>
#include <type_traits>

#include "sve/handlers/memory/memory_access.h"

namespace quern {

// A structure's registers, from Z`first` on: past Z31 comes Z0.
template <int N>
struct members {
  unsigned char* z[N];

  members(cpu_state* state, unsigned first) {
    for (unsigned k = 0; k != N; ++k) z[k] = state->z[(first + k) % 32];
  }
};

// What is dealt out to the registers, or collected from them, in one piece. Processors whose vectors are wider than 16
// bytes deal out words, but are slow to deal out narrower elements; the others have both or neither.
template <class T, class Vectors>
using unit_of = std::conditional_t<(Vectors::value > 16 && sizeof(T) < 4), std::uint32_t, std::make_unsigned_t<T>>;

// Bits 0 to bits - 1 of each 2 * bits.
template <unsigned bits, class Unit>
inline constexpr Unit low_halves = ~Unit{0} / ((Unit{1} << bits) + 1);

// Two halves side by side in each 2 * bits bits: half `low_half` of the same bits of `low`, and `high_half` of `high`.
template <unsigned bits, class Unit>
constexpr Unit paired(Unit low, unsigned low_half, Unit high, unsigned high_half) {
  if (low_half == 1) low >>= bits;
  if (high_half == 0) high <<= bits;
  return high ^ ((low ^ high) & low_halves<bits, Unit>);  // the form that the compiler knows as a selection of bits
}

// From pairs of elements that were dealt out to N registers, to elements dealt out. N pairs in a row are two
// structures: element k of the first is a half of pair k / 2, and that of the second a half of pair (N + k) / 2.
template <unsigned bits, class Unit, unsigned N>
inline void part_pairs(Unit (&units)[N]) {
  Unit parted[N];
#pragma GCC unroll 4
  for (unsigned k = 0; k != N; ++k) parted[k] = paired<bits>(units[k / 2], k % 2, units[(N + k) / 2], (N + k) % 2);
#pragma GCC unroll 4
  for (unsigned k = 0; k != N; ++k) units[k] = parted[k];
}

// The other way: pair j is the elements 2 * j and 2 * j + 1 of the two structures' 2 * N.
template <unsigned bits, class Unit, unsigned N>
inline void join_pairs(Unit (&units)[N]) {
  Unit joined[N];
#pragma GCC unroll 4
  for (unsigned j = 0; j != N; ++j)
    joined[j] = paired<bits>(units[2 * j % N], 2 * j / N, units[(2 * j + 1) % N], (2 * j + 1) / N);
#pragma GCC unroll 4
  for (unsigned j = 0; j != N; ++j) units[j] = joined[j];
}

// All lanes of N registers from the structures at `address`, which lie in one page: a fault is that of the first
// element. `vectors` is what by_widest_vectors gives.
template <class T, int N>
inline void load_structures(auto vectors, const members<N> to, std::uint64_t address) {
  using unit = unit_of<T, decltype(vectors)>;
  const auto* const structures = reinterpret_cast<const unsigned char*>(address);
  load_lane<T, T>(to.z[0], 0, address);
#pragma GCC ivdep  // no application's memory is the register file
  for (std::size_t i = 0; i != lane_count<unit>; ++i) {
    unit units[N];
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k) units[k] = lane<unit>(structures, i * N + k);
    if constexpr (sizeof(T) < sizeof(unit)) part_pairs<16>(units);
    if constexpr (sizeof(T) == 1 && sizeof(unit) != 1) part_pairs<8>(units);
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k) set_lane<unit>(to.z[k], i, units[k]);
  }
}

// The structures at `address` from all lanes of N registers, likewise.
template <class T, int N>
inline void store_structures(auto vectors, const members<N> from, std::uint64_t address) {
  using unit = unit_of<T, decltype(vectors)>;
  auto* const structures = reinterpret_cast<unsigned char*>(address);
  store_lane<T, T>(from.z[0], 0, address);
  // Joined first and collected then: of both in one loop the compiler makes no vectors.
  unit columns[N][lane_count<unit>];
#pragma GCC ivdep
  for (std::size_t i = 0; i != lane_count<unit>; ++i) {
    unit units[N];
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k) units[k] = lane<unit>(from.z[k], i);
    if constexpr (sizeof(T) == 1 && sizeof(unit) != 1) join_pairs<8>(units);
    if constexpr (sizeof(T) < sizeof(unit)) join_pairs<16>(units);
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k) columns[k][i] = units[k];
  }
#pragma GCC ivdep
  for (std::size_t i = 0; i != lane_count<unit>; ++i) {
#pragma GCC unroll 4
    for (unsigned k = 0; k != N; ++k) set_lane<unit>(structures, i * N + k, columns[k][i]);
  }
}

}  // namespace quern
