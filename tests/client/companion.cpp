// A double of the library that takes trace records: what the client asks of it shows among the framework's calls.
#include "framework_double.h"
#include "sve/memory/trace.h"
#include "sve/memory/trace_forked.h"
#include "sve/memory/trace_vector_length.h"

bool sve_init(std::uint64_t reserved, const char* application) {
  return quern::framework().answer("sve_init(" + std::to_string(reserved) + ", " + application + ")");
}
void sve_exit() { quern::framework().answer("sve_exit"); }
std::uint64_t incr_count() { return 0; }
void trace_mem(const sve_mem_ref_t&) {}
void quern_trace_forked() { quern::framework().answer("quern_trace_forked"); }
void quern_trace_vector_bytes(std::uint32_t bytes) { quern::framework().told_vector_bytes = bytes; }
