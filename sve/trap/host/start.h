// What the host does at the start of a process, a thread and a forked child.
#pragma once

namespace quern {

// Holds those trap signals that are blocked in the kernel, and unblocks them there: a new program or thread begins with
// the mask that its creator had.
void adopt_kernel_mask();

}  // namespace quern
