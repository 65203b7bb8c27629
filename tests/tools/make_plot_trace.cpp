// make_plot_trace NAME RECORDS: a trace of a program of that name in two regions: the first loads an array of RECORDS
// vectors of 64 bytes and stores each in another, far away; the second gathers words of the first array.
#include <unistd.h>

#include <cstdlib>

#include "sve/memory/trace.h"

int main(int argc, char** argv) {
  if (argc != 3 || !sve_init(0, argv[1])) return 1;
  const std::uint64_t records = std::strtoull(argv[2], nullptr, 10);
  const auto thread = static_cast<unsigned>(gettid());
  std::uint64_t count = 0;
  const auto mark = [&](unsigned marker) { trace_mem({count++, marker, 0, MEM_STORE, 0, 0, 0, 0}); };
  mark(tid_start_marker);
  for (std::uint64_t i = 0; i != records; ++i) {
    trace_mem({count++, thread, 0, MEM_LOAD, 0, 64, 0x100000 + 64 * i, 0x400000});
    trace_mem({count++, thread, 0, MEM_STORE, 0, 64, 0x7F0000000000 + 64 * i, 0x400004});
  }
  mark(tid_stop_marker);
  mark(tid_start_marker);
  for (std::uint64_t i = 0; i != records; ++i)
    trace_mem({count++, thread, 0, MEM_LOAD, 0, 4, 0x100000 + 4 * (i * 7919 % (16 * records)), 0x400008});
  mark(tid_stop_marker);
  sve_exit();
}
