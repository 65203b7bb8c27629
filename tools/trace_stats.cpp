// quern trace stats: what the accesses of a trace have in common, by code place, function, thread or region.
#include "tools/stats_data.h"
#include "tools/stats_text.h"
#include "tools/trace_commands.h"

namespace quern {

void print_trace_stats(trace_reader& reader, const trace_filter& filter, const stats_options& options) {
  const stats_table table = count_accesses(reader, filter, options.by, options.arrays);
  switch (options.format) {
    case stats_format::text: return print_stats_text(table, options.by, options.top);
    case stats_format::csv: return print_stats_csv(table, options.by, options.top);
    case stats_format::json: return print_stats_json(table, options.by, options.top);
  }
}

}  // namespace quern
