// The code that all rewritten places share: from the processor's registers to a call-out and back.
#pragma once

#include "sve/client/framework.h"

namespace quern {

// Where it begins. Rewritten code calls it with the place's record in X26 and the return address in X30. The
// application's X26 and X27 are in their slots then, its X30 in the one of X28, and all else in the registers. On
// return X26 and X30 are the application's again, and X27 in its slot.
extern app_pc shared_code;

// Makes the code, in the first thread, once the client's thread-local field is there; and frees it.
void make_shared_code(void* drcontext);
void free_shared_code();

}  // namespace quern
