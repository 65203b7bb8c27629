// What the trace commands print on standard output.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/array_names.h"
#include "tools/stats_key.h"
#include "tools/trace_filter.h"
#include "utils/trace_reader.h"

namespace quern {

void print_trace_info(const trace_reader& reader);

// A line each: its address, the beginning of its build ID, its path.
void print_trace_modules(const trace_modules& modules);

// A line a record, in count order. A file that is cut is said to be so on standard error.
enum class dump_format { text, csv, jsonl };
struct dump_options {
  dump_format format = dump_format::text;
  bool elements = false;  // also those that each record is about
};
void dump_trace(trace_reader& reader, const trace_filter& filter, const dump_options& options);

// Loads and stores counted, all and by what they have in common.
enum class stats_format { text, csv, json };
struct stats_options {
  stats_key by = stats_key::place;
  std::vector<given_array> arrays;
  stats_format format = stats_format::text;
  std::size_t top = 20;  // rows, those with most records
};
void print_trace_stats(trace_reader& reader, const trace_filter& filter, const stats_options& options);

// The same of two traces side by side. Rows are the same that have the same name.
void print_trace_diff(trace_reader& first, trace_reader& second, const trace_filter& filter,
                      const stats_options& options);

// The accesses in a form that cache simulators read: a line each.
enum class export_format { din, lackey };
void export_trace(trace_reader& reader, const trace_filter& filter, export_format format);

// Hits and misses in caches that the program's threads share, by level and by place or array. Stores fetch their line
// as loads do.
struct cache_options {
  std::vector<std::string> levels{"32K,8,64", "1M,16,64"};  // bytes, ways, bytes a line
  bool by_array = false;
  std::vector<given_array> arrays;
  std::size_t top = 20;  // rows, those with most misses
};
void print_trace_cache(trace_reader& reader, const trace_filter& filter, const cache_options& options);

// Writes a page of plots, index.html, and the plots as SVG files into a folder, which is made if need be; prints where
// the page is.
void plot_trace(trace_reader& reader, const trace_filter& filter, const std::string& folder);

// Whether the trace is whole and those records that the filter lets through are as the emulator writes them; a line for
// each thing that is not so.
bool check_trace(trace_reader& reader, const trace_filter& filter);

}  // namespace quern
