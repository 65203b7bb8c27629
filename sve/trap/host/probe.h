// Finding out whether memory can be read, by reading it.
#pragma once

#include <ucontext.h>

#include <cstdint>

namespace quern {

// Whether the byte at `address` can be read. A SIGBUS means that it can't when `bus_errors_too`; otherwise it is the
// application's own fault.
extern "C" bool quern_probe(std::uint64_t address, bool bus_errors_too);

// If the frame of a SIGSEGV or SIGBUS is that of a probe, makes the probe answer false and says true. The instruction's
// address tells, so that any number of threads may probe at once, and no action need be changed for it.
bool recover_probe(int signal, ucontext_t& frame);

}  // namespace quern
