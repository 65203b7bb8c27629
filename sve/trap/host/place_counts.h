// Counting the places of SVE instructions for `quern run`.
#pragma once

#include <ucontext.h>

#include <cstdint>

namespace quern {

// Maps the report that quern run asks for; without one, nothing is counted.
void open_place_report();

// The instruction that a SIGILL tells of.
struct trapped_place {
  std::uint64_t address;
  std::uint32_t word;
};
trapped_place place_of(const ucontext_t& frame);

void count_emulated(const trapped_place& place);

// Does not return if the user wants the program to end there.
void count_refused(const trapped_place& place);

// Tells where the instruction is whose fault ends the process.
void report_death(const unsigned char* pc);

}  // namespace quern
