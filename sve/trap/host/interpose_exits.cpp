// _exit and _Exit, which end the process past all destructors: it has ended in good order all the same.
#include <stdlib.h>
#include <unistd.h>

#include "sve/memory/trace.h"
#include "sve/trap/host/export.h"
#include "sve/trap/host/kernel.h"

using namespace quern;

QUERN_EXPORT void _exit(int status) {
  sve_exit();
  kernel::leave(status);
}

QUERN_EXPORT void _Exit(int status) noexcept { _exit(status); }
