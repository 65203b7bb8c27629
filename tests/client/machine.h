// A model of the processor that runs a rewritten block of the framework's double: the moves as the architecture defines
// them, the framework's own code as the framework promises it, the call-out as a real call. Between the instructions
// nothing else holds a register, so that a move forgotten or out of order shows in the result.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "framework_double.h"

namespace quern {

struct machine {
  std::array<std::uint64_t, 31> x;  // X28 is the framework's; the application's value is in stolen_x28
  std::uint64_t stolen_x28;
  std::uint64_t sp;
  std::uint64_t nzcv;
  std::uint64_t fpsr;
  std::uint64_t fpcr;
  std::array<std::array<unsigned char, 16>, 32> q;

  bool operator==(const machine&) const = default;

  // Runs the block. A native instruction does what `native` does. A call-out destroys every register but X28 and SP:
  // the code after it may assume nothing.
  void run(const instrlist_t& block, const std::function<void(machine&)>& native = {});
};

// A machine with a different value in each register.
machine numbered_machine();

}  // namespace quern
