// What the host does at the start of a process, a thread and a forked child.
#pragma once

namespace quern {

// Holds SIGILL if it is blocked in the kernel, and unblocks it there: a new program or thread begins with the mask that
// its creator had.
void adopt_kernel_mask();

}  // namespace quern
