// quern trace export: the accesses of a trace for cache simulators.
#include <fmt/core.h>

#include "tools/trace_commands.h"

namespace quern {

void export_trace(trace_reader& reader, const trace_filter& filter, export_format format) {
  filtered_records records(reader, filter);
  while (const std::optional<trace_record> record = records.next()) {
    if (!record->is_access()) continue;
    const bool is_store = record->kind == trace_kind::store;
    if (format == export_format::din)
      fmt::print("{:d} {:x} {:x}\n", is_store, record->addr, record->size);
    else
      fmt::print(" {} {:x},{}\n", is_store ? 'S' : 'L', record->addr, record->size);
  }
}

}  // namespace quern
