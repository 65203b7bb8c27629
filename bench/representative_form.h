// A word of each instruction form, and a register file that it can run on: what benchmarks call thunks with.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <random>

#include "sve/decoder/decode_row.h"
#include "sve/state/lanes.h"

namespace quern {

enum class active_lanes { all, half };

inline std::uint32_t representative_field(const operand& op, std::uint32_t position) {
  if (governs(op.kind)) return 0;
  if (op.traits().file != register_file::none) return position + 1;
  if (op.kind == operand_kind::imm_pattern) return 31;  // ALL
  return std::min(3u, (1u << std::popcount(op.mask)) - 1);
}

// A word of the row: registers all different, P0 governing, small immediates.
inline std::uint32_t representative_word(const decode_row& row) {
  std::uint32_t word = row.value, position = 0;
  for (const operand& op : row.operands) {
    std::uint32_t value = representative_field(op, position++);
    for (std::uint32_t rest = op.mask; rest != 0; rest &= rest - 1, value >>= 1) {
      if ((value & 1) != 0) word |= rest & -rest;
    }
  }
  return word;
}

// Vectors and predicates at random, the same ones at every call; lanes are positive and, as floating-point numbers of
// any width, neither infinite nor NaNs, since one bit of each 16 that is in their exponents is clear. Small numbers in
// the general registers, and in P0 all elements or every other one.
inline cpu_state& random_registers(std::uint32_t size, active_lanes active) {
  static cpu_state state;
  state = {};
  std::mt19937_64 random{1};
  for (auto& z : state.z) {
    for (std::size_t i = 0; i != VL_BYTES; ++i)
      z[i] = static_cast<unsigned char>(random() & (i % 2 == 0 ? 0xFF : 0x7B));
  }
  for (auto& p : state.p)
    std::generate(std::begin(p), std::end(p), [&] { return static_cast<unsigned char>(random() & 1); });
  for (std::size_t i = 0; i != VL_BYTES; ++i)
    state.p[0][i] = active == active_lanes::all || (i >> size) % 2 == 0 ? 1 : 0;
  std::fill(std::begin(state.ffr), std::end(state.ffr), static_cast<unsigned char>(1));
  for (std::size_t i = 0; i != std::size(state.x); ++i) state.x[i] = i * 8;
  return state;
}

// Makes a form that accesses memory do so from `base` on: in its base register, or in the lanes of its vector of bases,
// where 32-bit ones hold the low half. A vector of offsets counts up.
inline void address_memory(const decode_row& row, cpu_state& state, std::uint64_t base) {
  const auto has_base = [](const operand& op) { return op.traits().file == register_file::general_sp; };
  const std::uint64_t first = std::ranges::any_of(row.operands, has_base) ? 0 : base;
  for (std::uint32_t position = 0; const operand& op : row.operands) {
    const std::uint32_t num = representative_field(op, position++);
    if (has_base(op)) state.x[num] = base;
    if (position == 1 || op.traits().file != register_file::vector) continue;
    by_size(row.size, [&]<class T>(T) {
      for (std::size_t i = 0; i != lane_count<T>; ++i) set_lane<T>(state.z[num], i, static_cast<T>(first + i));
    });
  }
}

}  // namespace quern
