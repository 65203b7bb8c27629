// The process's mappings, as the kernel tells them.
#pragma once

#include <cstdint>

namespace quern {

struct mapping {
  std::uint64_t start, end;
  bool readable, writable, executable;
  bool shared;
  bool of_file;
};

// The mapping that `address` lies in; all 0 where there is none, or where the kernel doesn't tell. Reads
// /proc/self/maps into memory of its own: one thread at a time.
mapping find_mapping(const void* address);

}  // namespace quern
