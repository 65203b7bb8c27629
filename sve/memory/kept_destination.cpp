// The destination that a fault takes back.
#include "sve/memory/kept_destination.h"

namespace quern {

constinit thread_local kept_registers kept_destination{};

void put_destination_back() {
  for (unsigned i = 0; i != kept_destination.count; ++i)
    copy_vector(kept_destination.places[i], kept_destination.bytes[i]);
  kept_destination.count = 0;
}

}  // namespace quern
