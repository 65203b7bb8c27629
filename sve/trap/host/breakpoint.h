// Instructions over which a debugger has put a breakpoint. The processor has met the instruction when the debugger
// stepped from there, but the breakpoint is back in its place by the time that SIGILL arrives.
#pragma once

#include <cstdint>

namespace quern {

// BRK, which raises SIGTRAP: SIGILL never comes of it.
inline bool is_breakpoint(std::uint32_t word) { return (word & 0xFFE0001F) == 0xD4200000; }

// The word at `pc` in the file that it was loaded from; the breakpoint, if it comes from no file.
std::uint32_t word_beneath_breakpoint(const unsigned char* pc);

}  // namespace quern
