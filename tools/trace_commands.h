// What the trace commands print on standard output.
#pragma once

#include "utils/trace_reader.h"

namespace quern {

enum class dump_format { text, csv, jsonl };

void print_trace_info(const trace_reader& reader);

// A line a record, in count order. A file that is cut is said to be so on standard error.
void dump_trace(trace_reader& reader, dump_format format);

}  // namespace quern
