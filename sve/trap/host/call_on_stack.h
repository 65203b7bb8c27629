// A call on another stack.
#pragma once

#include <csignal>

namespace quern {

using signal_function = void(int, siginfo_t*, void*);

// Calls handler(signal, info, context) with `stack_top`, a multiple of 16, as the stack pointer, and returns on the
// present stack.
extern "C" void quern_call_on_stack(int signal, siginfo_t* info, void* context, signal_function* handler,
                                    void* stack_top);

}  // namespace quern
