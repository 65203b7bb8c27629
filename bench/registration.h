// Benchmarks that are made from the decode maps. The maps are filled before main, so their benchmarks register in it.
#pragma once

namespace quern {

// One for each direct thunk that neither touches memory nor computes in floating point, and another for its predicated
// forms with half of the lanes active.
void register_direct_thunks();

}  // namespace quern
