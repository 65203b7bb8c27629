// The region-of-interest markers.
#include "sve/handlers/integer/trace_marker.h"

#include "sve/memory/trace.h"

namespace quern {

void switch_trace_region(bool on) {
  enable_trace = on;
  trace_roi.count = incr_count();
  trace_roi.tid = on ? tid_start_marker : tid_stop_marker;
  trace_mem(trace_roi);
}

}  // namespace quern
