// What the emulator asks about application memory, answered by the framework.
#pragma once

namespace quern {

// Takes the page size from the framework, since the client's own libc may not know it, and has the accesses of
// instructions noted, for their faults. To be called once, at start-up.
// (That guarded reads and readability probes survive their faults by the framework's means is settled at load time: it
// does not let a fault in the client's own code come to the client's signal handlers.)
void use_framework_memory();

}  // namespace quern
