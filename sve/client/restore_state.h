// The application's registers where rewritten code was interrupted.
#pragma once

#include "sve/client/framework.h"

namespace quern {

// Restore-state event: brings the application's X26 and X27 back from their slots where the code that was interrupted
// has X27 for itself.
void event_restore_state(void* drcontext, void* tag, dr_mcontext_t* mcontext, bool restore_memory,
                         bool app_code_consistent);

}  // namespace quern
