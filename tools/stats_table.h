// The accesses of a trace counted by what they have in common.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/access_stats.h"
#include "tools/array_names.h"
#include "tools/stats_key.h"
#include "tools/trace_filter.h"

namespace quern {

struct stats_row {
  std::string name;
  std::string source;    // of a place: "/src/kernel.c:12", or empty
  std::uint64_t pc = 0;  // of a place
  access_stats stats;
};

struct stats_table {
  static constexpr std::size_t most_rows = 4096;  // those that come later are summed up in one
  access_stats total;
  std::vector<stats_row> rows;  // most records first
};

// Walks through the trace once, by array twice; `arrays` are those that the user has named.
stats_table count_accesses(trace_reader& reader, const trace_filter& filter, stats_key by,
                           const std::vector<given_array>& arrays);

double percent(std::uint64_t part, std::uint64_t whole);

}  // namespace quern
