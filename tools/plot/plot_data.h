// What the plots of a trace show. Its memory is bounded however long the trace is.
#pragma once

#include <string>
#include <vector>

#include "tools/access_stats.h"
#include "tools/plot/address_layout.h"
#include "tools/plot/density_grid.h"
#include "tools/plot/footprint_windows.h"
#include "tools/plot/stride_counts.h"
#include "tools/trace_filter.h"

namespace quern {

// An instruction that accessed memory.
struct plot_place {
  std::uint64_t pc = 0;      // 0: all those that are not listed
  std::string name, source;  // "multiply+0x1c", "product.c:12", or empty where nothing tells
  access_stats stats;
};

struct plot_data {
  static constexpr std::uint64_t line_bytes = access_stats::line_bytes;
  static constexpr std::size_t most_places = 100;    // listed; the others are summed up in one
  static constexpr std::size_t most_regions = 1000;  // those that come later are not drawn

  std::string program;
  std::uint32_t vector_bytes = 0;
  std::uint64_t first_time = 0, last_time = 0;  // numbers of records
  access_stats total;
  std::vector<plot_place> places;            // most accesses first, others last
  std::vector<std::uint64_t> region_starts;  // times
  address_layout layout;
  density_grid grid;
  footprint_windows footprint;
  stride_counts strides;
};

// Walks through the trace twice.
plot_data collect_plot_data(trace_reader& reader, const trace_filter& filter);

}  // namespace quern
