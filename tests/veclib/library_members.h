// All functions of the library by name, to be called without knowing their signatures: what tests of whole families go
// over, so that a definition is written once and holds for each type.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "sve/state/cpu_context.h"
#include "tests/harness/library_context.h"

namespace quern {

// Operands of a call. A function takes those that it has parameters for, each kind in its own order: a function of
// (VecV, PredV, VecV, scalar) takes vectors[0], predicates[0], vectors[1] and scalars[0].
struct library_operands {
  VecV vectors[3];
  PredV predicates[3];
  std::uint64_t scalars[3];
  VecV* registers = nullptr;  // of a load or store of several, what it writes or reads
};

// The result of a call, in the member that is of its kind; a narrow scalar is zero-extended.
struct library_result {
  VecV vector;
  PredV predicate;
  std::uint64_t scalar;
};

enum class result_kind : std::uint8_t { none, vector, predicate, scalar };

// How many operands of each kind a function takes, and what it answers.
struct operand_counts {
  int vectors, predicates, scalars;
  result_kind result;
};

// One function: VecU8AbdVVM has the tag "U8" and the stem "AbdVVM".
struct library_member {
  std::string_view name, tag, stem;
  const void* function;  // a pointer to it
  operand_counts takes;
  library_result (*call)(const void* function, const library_operands& operands, CpuContext* ctx);

  library_result operator()(const library_operands& operands, CpuContext& ctx) const {
    return call(function, operands, &ctx);
  }
  int width() const;         // of a lane, in bits
  bool is_unsigned() const;  // whether its lanes are
};

std::span<const library_member> library_members();

// Those of one stem for integers and predicates. A stem without any fails the test.
std::vector<library_member> members_of(std::string_view stem);

}  // namespace quern
