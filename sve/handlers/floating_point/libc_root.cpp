// Calls of the C library's square roots.
#include "sve/handlers/floating_point/libc_root.h"

#include <math.h>

#include <bit>

namespace quern {

void report_root(std::uint32_t single) { static_cast<void>(::sqrtf(std::bit_cast<float>(single))); }
void report_root(std::uint64_t number) { static_cast<void>(::sqrt(std::bit_cast<double>(number))); }

}  // namespace quern
