// The C library's square roots, for the error that they report in errno.
#pragma once

#include <cstdint>

namespace quern {

// Calls sqrtf or sqrt with the number of those bits and drops the result. A function that a host may put another in the
// place of, one whose application shares errno.
void report_root(std::uint32_t single);
void report_root(std::uint64_t number);

}  // namespace quern
