// Processors that run a rewritten block of the framework's double: a model, which any machine has, and, on AArch64, the
// machine itself. The moves are the architecture's, the framework's own code does what the framework promises, the
// call-out is a real call. Between the instructions nothing else holds a register, so that a move forgotten or out of
// order shows in the result.
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
};

// A machine with a different value in each register.
machine numbered_machine();

// What a native instruction does, for the model: the machine runs its word.
using native_effect = std::function<void(machine&)>;

// Runs the block. A call-out destroys every register but X28, SP and FPCR: the code after it may assume nothing.
using run_block = void(machine&, const instrlist_t& block, const native_effect& native);

run_block run_on_model;
run_block run_on_processor;  // AArch64 builds only

// The call of a call-out, with its argument; what it does to the registers is the caller's.
void call_callee(const instr_t& call, std::uint64_t argument);

}  // namespace quern
