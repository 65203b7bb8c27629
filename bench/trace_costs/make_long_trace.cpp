// make_long_trace loop|gather|line|mixture RECORDS: traces so many records of the stream into the file that QUERN_TRACE
// names, in a region of interest.
#include <cstdio>
#include <cstdlib>

#include "bench/trace_costs/trace_streams.h"

namespace {

void send(sve_mem_ref_t record) {
  record.count = incr_count();
  trace_mem(record);
}

sve_mem_ref_t marker(std::uint32_t tid) {
  sve_mem_ref_t record{};
  record.tid = tid;
  return record;
}

}  // namespace

int main(int argc, char** argv) {
  const char* const name = argc == 3 ? argv[1] : "";
  const std::uint64_t records = argc == 3 ? std::strtoull(argv[2], nullptr, 10) : 0;
  for (const quern::trace_stream& stream : quern::trace_streams) {
    if (stream.name != name || !sve_init(0, "make_long_trace")) continue;
    send(marker(tid_start_marker));
    for (std::uint64_t i = 0; i != records; ++i) send(stream.next(i));
    send(marker(tid_stop_marker));
    sve_exit();
    return EXIT_SUCCESS;
  }
  std::fprintf(stderr, "usage: QUERN_TRACE=FILE %s loop|gather|line|mixture RECORDS\n", argv[0]);
  return EXIT_FAILURE;
}
