// The line that tells of an instruction that could not be emulated.
#pragma once

#include "sve/state/text_line.h"

namespace quern {

// The line and its end.
text_line failure_line(std::uint32_t word, const void* pc);

}  // namespace quern
