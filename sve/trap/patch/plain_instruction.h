// Instructions of the program's own that a run takes along: those between emulated words that compute in general
// registers, and the branch back that makes a loop of the run.
#pragma once

#include <cstdint>
#include <optional>

namespace quern {

// One that reads and writes no more than general registers and flags, and can't fault.
struct plain_instruction {
  std::uint32_t word;     // with X0, X1 and X2 in the place of d, n and m
  std::uint32_t d, n, m;  // general registers; 31: none
  bool sets_flags;
};
// Nothing for any other word.
std::optional<plain_instruction> plain_instruction_of(std::uint32_t word);

// A branch on a condition, or on whether a register is zero.
struct plain_branch {
  std::uint32_t word;  // with a distance of 0, and X0 in the place of `tested`
  std::uint32_t tested;
  bool tests_flags;
  std::int64_t distance;  // in bytes
};
// Nothing for any other word.
std::optional<plain_branch> plain_branch_of(std::uint32_t word);

}  // namespace quern
