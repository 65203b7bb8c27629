// What is known of registers while code is made, and what instructions make of that.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace quern {

// What a general register is known to hold.
struct known_value {
  enum class kind : std::uint8_t {
    nothing,
    number,
    state,     // the address of the thread's cpu_state, and `number` more
    way_back,  // where the function was called from
    stack,     // where the stack pointer stood at first, and `number` more
    kept       // what the register of that number held at first
  };
  kind is = kind::nothing;
  std::uint64_t number = 0;

  friend bool operator==(const known_value&, const known_value&) = default;
};

// X0 to X30.
using known_registers = std::array<known_value, 31>;

// What an instruction computes.
struct known_result {
  std::uint32_t d;  // the register; 31: none
  known_value value;
  std::optional<std::uint32_t> nzcv = {};  // as MRS delivers it; none: the flags are as before

  friend bool operator==(const known_result&, const known_result&) = default;
};

// The result of an instruction at `pc` that computes from nothing but known registers: moves, sums, logical operations,
// shifts, and comparisons by those. None for any other.
std::optional<known_result> result_of(std::uint32_t word, const unsigned char* pc, const known_registers& registers);

// Whether the flags, as MRS delivers them, meet a condition as instructions encode it.
bool meets(std::uint32_t nzcv, std::uint32_t condition);

}  // namespace quern
