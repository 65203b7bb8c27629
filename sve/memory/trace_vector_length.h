// An entry that a library for trace records may have beside those of sve/memory/trace.h.
#pragma once

#include <cstdint>

// Tells the vector length, in bytes, to a library that serves hosts of several. To be called before the first record.
extern "C" [[gnu::weak]] void quern_trace_vector_bytes(std::uint32_t bytes);
