// What an instruction that has no routine yet answers.
#pragma once

#include "sve/state/cpu_state.h"

namespace quern {

// Says on standard error that `word`, at the state's pc and called `name`, is not implemented. Answers
// DECODE_UNIMPLEMENTED and changes nothing. Fit for signal handlers.
aarch64_decode_rc report_unimplemented(const cpu_state* state, std::uint32_t word, const char* name);

}  // namespace quern
