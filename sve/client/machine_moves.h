// The moves of the processor's registers into a cpu_state and back: 52 instructions each way.
#pragma once

#include "sve/client/insertion.h"

namespace quern {

// Both want the cpu_state's address in X27 and use X26; X26, X27 and X28 themselves stay out of the register file. FPCR
// is not moved: the host's always is the application's.
void insert_moves_to_state(const insertion_point& at);
void insert_moves_from_state(const insertion_point& at);

}  // namespace quern
