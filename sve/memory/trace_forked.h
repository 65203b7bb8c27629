// An entry that a library for trace records may have beside those of sve/memory/trace.h.
#pragma once

// For a host under which `fork` runs no pthread_atfork handlers of the library's: to be called in a forked child, on
// its one thread, before the child's first record. The child then writes a trace of its own. Calling it again, or in a
// process that was not forked, does nothing. Async-signal-safe.
extern "C" [[gnu::weak]] void quern_trace_forked();
