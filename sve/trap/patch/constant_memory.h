// Memory of the host's own that does not change once the host has been loaded.
#pragma once

#include <cstdint>

namespace quern {

// Whether the doubleword at the address is such: among what the dynamic linker has filled in and then made read-only.
bool is_constant_memory(std::uint64_t address);

}  // namespace quern
