// The region-of-interest markers: two words of ADD (immediate) that the architecture leaves undefined start and stop
// the tracing of the executing thread.
#pragma once

namespace quern {

// The immediates of ADD in bytes that mark a region: #1, LSL #8 and #2, LSL #8.
inline constexpr unsigned int start_marker = 0x100, stop_marker = 0x200;

// Switches the thread's enable_trace and sends its trace_roi record, whether or not the region was open already.
void switch_trace_region(bool on);

// Acts on a marker. Any other immediate does nothing.
inline void mark_trace_region(unsigned int immediate) {
  if (immediate == start_marker || immediate == stop_marker) switch_trace_region(immediate == start_marker);
}

}  // namespace quern
