// What the emulator asks about application memory, answered by the framework.
#pragma once

namespace quern {

// Takes the page size from the framework, and has it survive the faults of guarded reads and readability probes: it
// does not let a fault in the client's own code come to the client's signal handlers, and the client's own libc may
// not know the page size. To be called once, at start-up.
void use_framework_memory();

}  // namespace quern
