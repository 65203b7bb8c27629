// make_trace EXTRA [ONLY [LINES]]: traces seven records that show all kinds, then EXTRA more, or those only, of one
// line of memory or of so many in turn; prints the number of its one thread.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "sve/memory/trace.h"

int main(int argc, char** argv) {
  if (argc < 2 || !sve_init(0, "make_trace")) return 1;
  const sve_mem_ref_t records[] = {
      {0, tid_start_marker, 0, MEM_STORE, 0, 0, 0, 0},
      {1, 5, 0, MEM_LOAD, 0, 256, 0x2000, 0x400000},
      {2, 5, trace_group_first | trace_group_member, MEM_LOAD, 0, 4, 0x1000, 0x400004},
      {3, 5, trace_group_member | trace_group_last, MEM_STORE, 0, 16, 0x20F8, 0x400008},
      {4, tid_stop_marker, 0, MEM_STORE, 0, 0, 0, 0},
      {5, 5, 0, memaccess_type_t{9}, 0, 1, 0x9000, 0x40000C},
      {6, 5, 0, MEM_LOAD, 0, 8, 0xFFFFFFFFFFFFFFF0, 0x400010},
  };
  std::uint64_t count = 0;
  for (const sve_mem_ref_t& record : records) {
    if (argc > 2) break;
    trace_mem(record);
    ++count;
  }
  const std::uint64_t lines = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1;
  for (const std::uint64_t end = count + std::strtoull(argv[1], nullptr, 10); count != end; ++count)
    trace_mem({count, 5, 0, MEM_LOAD, 0, 8, 0x1000 + 64 * (count % lines), 0x400000});
  sve_exit();
  std::printf("%d\n", gettid());
}
