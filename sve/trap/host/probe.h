// Finding out whether memory can be read, by reading it.
#pragma once

#include <ucontext.h>

#include <cstdint>

namespace quern {

// Whether the byte at `address` can be read. One that has nothing behind it (SIGBUS) never can, whatever is asked: a
// load by ldff1 or ldnf1 that comes to the end of a truncated file stops there, as on a processor with SVE.
extern "C" bool quern_probe(std::uint64_t address, bool bus_errors_too);

// The same for an emulated instruction, which may run while the application has SIGSEGV or SIGBUS blocked: no fault may
// be raised then, and the kernel is asked. So it is in generated code, where there is no signal's frame to tell the
// mask.
bool can_read(std::uint64_t address, bool bus_errors_too);

// If the frame of a SIGSEGV or SIGBUS is that of a probe, makes the probe answer false and says true. The instruction's
// address tells, so that any number of threads may probe at once, and no action need be changed for it.
bool recover_probe(ucontext_t& frame);

}  // namespace quern
