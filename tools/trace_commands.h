// What the trace commands print on standard output.
#pragma once

#include "tools/trace_filter.h"
#include "utils/trace_reader.h"

namespace quern {

void print_trace_info(const trace_reader& reader);

// A line a record, in count order. A file that is cut is said to be so on standard error.
enum class dump_format { text, csv, jsonl };
void dump_trace(trace_reader& reader, const trace_filter& filter, dump_format format);

// Loads and stores counted, all and by what they have in common.
enum class stats_key { place, thread, region };
enum class stats_format { text, csv, json };
struct stats_options {
  stats_key by = stats_key::place;
  stats_format format = stats_format::text;
  std::size_t top = 20;  // rows, those with most records
};
void print_trace_stats(trace_reader& reader, const trace_filter& filter, const stats_options& options);

// The accesses in a form that cache simulators read: a line each.
enum class export_format { din, lackey };
void export_trace(trace_reader& reader, const trace_filter& filter, export_format format);

}  // namespace quern
