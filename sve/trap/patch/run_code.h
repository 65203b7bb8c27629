// Code for runs: what stands in the place of their words. It brings the application's registers into the thread's
// cpu_state, calls the thunks one after the other, brings the registers back, and branches behind the run. A register
// that no thunk reads or writes stays where it is. Instructions of the program's own compute in cpu_state meanwhile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "sve/state/cpu_state.h"
#include "sve/trap/patch/run.h"

namespace quern {

struct run_code;

// Why a run is to end after its present word: in known_lanes::end_bit, whether it is, and others.
enum class early_end : std::uint64_t {
  none,
  signal_waits = std::uint64_t{1} << 63,   // one that this host keeps
  signal_blocked = std::uint64_t{3} << 62  // one that the kernel has, with all others blocked until then
};

// One thread's registers as generated code knows them: the emulator's, and in front of them, within reach of the pairs
// of stores, what is its own.
struct alignas(64) thread_registers {
  unsigned char v[32][16];  // vectors as they were when the run began: those that are kept here
  const run_code* running;  // the code that the thread is in, null if none; until all is brought in, only not null
  early_end ends;
  std::uint64_t known;    // of predicates, since the last run (known_lanes.h); who changes them elsewhere clears it
  std::uint64_t mask;     // when signals are blocked until the end: the thread's mask from before,
  std::uint64_t awaited;  // and the signal that is awaited, as a set
  std::uint64_t unused[3];
  cpu_state state;
};

// What stands before the code itself.
struct run_literal {
  sve_handler thunk;
  const unsigned char* pc;
  std::uint32_t word;
  std::uint32_t start;  // of the word's code, in bytes from the start of the run_code
};
struct run_code {
  unsigned char* site;   // the run's first word in the application's code
  std::uint32_t x, z;    // the registers that stand in cpu_state while the run goes on; SP and the flags do always
  std::uint32_t v;       // the vectors that stand in thread_registers::v
  std::uint32_t behind;  // the application's word behind the run, for whoever made the code
  bool fpsr;             // FPSR stands in cpu_state too
  std::uint16_t words;
  // Bytes from the start of this record: of the code, of its last part, in which no more thunk is called, of its last
  // two instructions, which take X19 and X20 from the stack and branch, of what stands behind them for the ways out of
  // thunks' code that are seldom taken, and behind that.
  std::uint16_t entry, way_out, pop, last, cold, end;
  run_literal literals[max_run];  // as many as there are words; then the code

  // Pieces of code begin at such multiples.
  static constexpr std::size_t alignment = 64;

  const unsigned char* at(std::size_t offset) const { return reinterpret_cast<const unsigned char*>(this) + offset; }
  bool holds(const unsigned char* pc) const { return pc >= early_end_at(0) && pc < at(end); }
  // The undefined instruction by which a run ends early behind that word.
  const unsigned char* early_end_at(std::size_t i) const { return at(entry - 4 * (words - i)); }
  // Whether the code at `pc` is that of a word, or what it has at other places, where known_lanes::keeper has its use.
  bool is_under_way(const unsigned char* pc) const { return pc >= at(literals[0].start) && pc < at(end); }
  // The word whose code has an access of the program's memory at `pc`.
  std::size_t word_with(const unsigned char* pc) const {
    std::size_t i = words - 1u;
    while (i != 0 && pc < at(literals[i].start)) --i;
    return i;
  }
  unsigned char* behind_site() const { return site + words * 4; }
};

// The room that a run's code needs at most.
inline constexpr std::size_t max_run_code_bytes = 16384;
// Of it, what is needed if no thunk's code is inlined.
inline constexpr std::size_t max_bytes_of_calls = 4096;

// Makes the code of a run for `site`. It is written to `room`, which starts at a multiple of 64 bytes, and is to run at
// `place`, within reach of a branch from the site. Each thread has its thread_registers at `registers_offset` from the
// value of TPIDR_EL0, 0 to 2^24 - 1. Answers the bytes used.
//
// The code needs no register of the application's, and of its stack what the thunks do and 16 bytes. That the run is to
// end it knows when a word is done, from known_lanes::keeper, and that from `ends` where the run begins and where a
// thunk has returned: between these, whoever wants it to end has to change the register. A thunk finds its word's place
// in cpu_state.pc; what else the code does tells no place.
std::size_t make_run_code(std::span<const run_word> run, unsigned char* site, std::size_t registers_offset,
                          const unsigned char* place, std::span<unsigned char, max_run_code_bytes> room);

}  // namespace quern
