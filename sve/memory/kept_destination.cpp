// The destination that a fault takes back.
#include "sve/memory/kept_destination.h"

#include <utility>

namespace quern {

constinit thread_local kept_vector kept_destination{};

void put_destination_back() {
  if (unsigned char* const z = std::exchange(kept_destination.z, nullptr))
    std::memcpy(z, kept_destination.bytes, VL_BYTES);
}

}  // namespace quern
