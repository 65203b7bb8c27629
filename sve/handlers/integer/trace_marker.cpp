// The region-of-interest markers.
#include "sve/handlers/integer/trace_marker.h"

#include "sve/memory/trace.h"

namespace quern {

void mark_trace_region(unsigned int immediate) {
  if (immediate != start_marker && immediate != stop_marker) return;
  enable_trace = immediate == start_marker;
  trace_roi.count = incr_count();
  trace_roi.tid = enable_trace ? tid_start_marker : tid_stop_marker;
  trace_mem(trace_roi);
}

}  // namespace quern
