// Which registers a function of the host's may write, found from its machine code.
#pragma once

#include <cstdint>

namespace quern {

struct decode_row;

// Sets of registers: number n is bit n. X31, the stack pointer or zero register, is in no set.
struct written_registers {
  std::uint32_t x = 0, v = 0;

  friend bool operator==(const written_registers&, const written_registers&) = default;
};

inline constexpr std::uint32_t all_general_registers = 0x7FFFFFFF;
inline constexpr written_registers all_registers{all_general_registers, ~std::uint32_t{0}};

// The word by which a function begins that keeps all registers but X0, X16, X17 and X30, whatever it calls: a move to
// the zero register, which does nothing.
inline constexpr std::uint32_t keeps_registers_word = 0xD28A2AFF;

// The registers that some instruction writes on some way through the AArch64 code at `function` and all that it calls,
// those that it brings back before it returns among them. All registers, when it meets what it does not understand: a
// call or jump through a register other than to another library, an unknown instruction, or code too long. For one
// thread at a time; safe in a signal handler.
written_registers written_by(const unsigned char* function);

// The same of a row's thunk, which is looked at once, as a rule. Where that calls through a register, it is the
// library's function that it calls.
written_registers written_by(const decode_row& row);

}  // namespace quern
