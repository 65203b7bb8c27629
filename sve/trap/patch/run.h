// A run: words next to each other that one piece of generated code serves, and the registers that they use. They are
// emulated ones, instructions of the program's own between them, and at the end perhaps a branch back into the run.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "sve/state/cpu_state.h"
#include "sve/trap/patch/written_registers.h"

namespace quern {

struct decode_row;

struct run_word {
  std::uint32_t word = 0;
  const decode_row* row = nullptr;  // null: one of the program's own, of which only the word counts
  sve_handler thunk = nullptr;      // what generated code is to call, with FPSR in cpu_state
  written_registers written;        // by the thunk
  std::uint32_t ordinary = 0;       // the instruction that is carried out in the thunk's place, if there is one
};

// Whether the word's thunk is called.
inline bool is_called(const run_word& word) { return word.row && !word.ordinary; }

// The words of one run at most.
inline constexpr std::size_t max_run = 32;

// The run that begins at `code`, an emulated word: to the first word that can't be part of it, to the end of the
// `bytes` that may be read, or to the most that a run has. It ends in an emulated word, or in a branch back that makes
// a loop with an emulated word in it. Answers the number of words. What the thunks write is for the caller to find out:
// all registers, until then.
std::size_t collect_run(const unsigned char* code, std::size_t bytes, std::array<run_word, max_run>& run);

// Sets of registers: number n is bit n. Register 31 is in no set of general registers.
struct register_use {
  std::uint32_t z = 0, z_written = 0;
  bool p = false;  // whether there is a predicate among the operands
  std::uint32_t p_written = 0;
  std::uint32_t x = 0, x_written = 0;
  bool sp_written = false;
  bool fpsr = false;  // FPCR and FPSR, which it may write, are to be in cpu_state
};

// What a word uses by its row. FFR, predicates that are read, and the flags are not told: the first two are in
// cpu_state alone, and the flags are brought in and out always, as the code of the thunks changes them. Handlers of
// floating point compute under the processor's own FPSR where it has not to be in cpu_state.
register_use use_of(const run_word& word);
register_use use_of(std::span<const run_word> run);

}  // namespace quern
