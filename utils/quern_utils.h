// What libquern_utils offers to hosts beside the four entries of sve/memory/trace.h.
#pragma once

// For a host whose `fork` does not run pthread_atfork handlers: to be called in a forked child, on its one thread,
// before the child's first record. The child then writes a trace of its own. Calling it again, or in a process that was
// not forked, does nothing. Async-signal-safe.
extern "C" void quern_trace_forked();
