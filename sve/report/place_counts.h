// Counting the places of SVE instructions for `quern run`, in a file that both have mapped.
#pragma once

#include <cstdint>

namespace quern {

// A word of the program's code.
struct placed_word {
  std::uint64_t address;
  std::uint32_t word;
};

// Where the host knows a piece of code to be from: the number of its module by module_number(), and the module's begin;
// 0 where there is none.
struct code_origin {
  std::uint16_t module;
  std::uint64_t base;
};
using origin_finder = code_origin(std::uint64_t address);

// Maps the report that quern run asks for; without one, nothing is counted. The finder is asked once a place.
void open_place_report(origin_finder* finder);

// The number in the report of the module that is loaded at `base`; 0 when there is no room. The program's own path is
// empty. To be called by the finder.
std::uint16_t module_number(std::uint64_t base, const char* path);

// Any thread may call these at any time, in a signal handler too: they take no lock and no memory.
void count_emulated(const placed_word& place);
// Answers whether the user wants the program to end there.
bool count_refused(const placed_word& place);
// Of an instruction that has a handler, which could not do it. Answers whether to tell it now: it is the place's first,
// or nothing counts it.
bool count_failed(const placed_word& place);

// Tells where the instruction is whose fault ends the process by that signal, or may: the last one counts.
void report_death(std::uint64_t address, int signal);

}  // namespace quern
