// The memory that test cases' loads and stores touch. It lies at a fixed address below 4 GiB, so that a case has the
// same addresses on every platform and 32-bit lanes can hold them; around it nothing can be written.
#pragma once

#include <cstdint>

namespace quern {

inline constexpr std::int64_t arena_bytes = 8192;

// The arena's bytes. The first call maps it: the process ends with a message when it can't be. The page after it can be
// read, since first-fault loads look ahead by a page.
unsigned char* arena();

}  // namespace quern
