// A double of the library that takes trace records: keeps them all, so that a test can compare the list whole.
#pragma once

#include <cstdint>
#include <ostream>
#include <vector>

#include "sve/memory/trace.h"

// A record's fields, all but the one that nobody writes.
bool operator==(const sve_mem_ref_t& a, const sve_mem_ref_t& b);
std::ostream& operator<<(std::ostream& out, const sve_mem_ref_t& record);

namespace quern {

// Forgets all records; the next count is 0 again.
void start_recording();

// The records since then, in the order in which trace_mem took them.
std::vector<sve_mem_ref_t> recorded_trace();

// How many counts incr_count has given since then.
std::uint64_t counts_given();

// Whether the calling thread's tracing was on, at each call of incr_count and trace_mem since then.
std::vector<bool> tracing_at_calls();

}  // namespace quern
