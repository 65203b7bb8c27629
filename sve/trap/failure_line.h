// The line that tells of an instruction that could not be emulated, made without the C library's formatting, which is
// not for signal handlers.
#pragma once

#include <cstdint>

namespace quern {

// A line and its end.
struct failure_line {
  failure_line(std::uint32_t word, const void* pc);
  char text[96];
};

}  // namespace quern
