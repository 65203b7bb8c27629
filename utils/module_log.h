// The list of modules in the trace file: each program or library whose code is in memory, from the record at which it
// was noticed. Async-signal-safe.
#pragma once

#include "utils/mapped_modules.h"

namespace quern {

// Notes what has come and gone, as of the record of that count. Does nothing while another thread is at it.
void note_modules(std::uint64_t count);

// The same if the last look was not just before (10 ms).
void note_modules_now_and_then(std::uint64_t count);

// The same if the place is in no module that is known. Answers the range that is known now: the module's, or what lies
// about the place where it is in none. Empty when another thread is at it.
address_range note_module_of(std::uint64_t count, std::uint64_t place);

// In a forked child: what was noted is in the parent's trace.
void forget_modules();

}  // namespace quern
