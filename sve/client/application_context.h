// The application's registers, from the register file to the framework's record of them.
#pragma once

#include "sve/client/framework.h"
#include "sve/state/cpu_state.h"

namespace quern {

// All registers, as the register file has them.
void fill_context(dr_mcontext_t& context, const cpu_state& state);

// A record of all registers, to go on with. It is built whole: the framework's own answer has, in a call-out, some
// registers of the client's code, and others in the wrong places.
dr_mcontext_t context_of(const cpu_state& state);

}  // namespace quern
