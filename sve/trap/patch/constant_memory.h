// Memory of the host's own that does not change once the host has been loaded.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quern {

// Whether these bytes are such: among what the dynamic linker has filled in and then made read-only, or the choice of a
// host whether accesses are noted.
bool is_constant_memory(std::uint64_t address, std::size_t bytes);

}  // namespace quern
