// The scalable registers across the application's signal handlers, as the kernel of a processor with SVE keeps them in
// the signal frame.
#pragma once

#include "sve/client/framework.h"

namespace quern {

// Kernel-transfer event: at the delivery of a signal takes a copy of Z, P and FFR, at the return of its handler brings
// them back. A handler is known again by the stack pointer that it interrupted; copies of handlers that were left by a
// long jump are dropped when they are seen to be behind, or when there is no place left. Ends the process, with a line
// on the framework's error stream, when there is none even so.
void event_kernel_transfer(void* drcontext, const dr_kernel_xfer_info_t* info);

// Drops all copies of a thread: at its end, and at its start, since a forked child's first thread is the only one, and
// a new one may have the drcontext of one that stayed behind.
void forget_signal_vectors(const void* drcontext);

}  // namespace quern
