// Writing into the program's code.
#pragma once

#include <cstdint>

#include "sve/trap/host/memory_map.h"

namespace quern {

// Has the processor fetch anew what was written as data.
inline void step_caches(unsigned char* begin, unsigned char* end) {
  __builtin___clear_cache(reinterpret_cast<char*>(begin), reinterpret_cast<char*>(end));
}

// Writes one word of the mapping `code`, which has the same rights afterwards and can be executed all the while, as
// other threads may; its page is writable for that moment, or all of it. False if it can't be made so. One thread at a
// time.
bool write_code_word(unsigned char* place, std::uint32_t word, const mapping& code);

}  // namespace quern
