// A thread's tracing state.
#include "sve/memory/trace.h"

constinit thread_local bool enable_trace = false;
constinit thread_local sve_mem_ref_t trace_roi{};
