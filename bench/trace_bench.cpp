// What a trace record costs: its count and its way into the file, which is made in the temporary folder and removed.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "bench/trace_costs/trace_streams.h"

namespace {

namespace fs = std::filesystem;

class trace_folder {
 public:
  trace_folder() : name_((fs::temp_directory_path() / "quern_bench.XXXXXX").string()) {
    if (mkdtemp(name_.data()) == nullptr) return;
    setenv("QUERN_TRACE", (fs::path(name_) / "trace").c_str(), 1);
    ready_ = sve_init(0, "quern_bench");
  }
  ~trace_folder() {
    std::error_code ignored;
    fs::remove_all(name_, ignored);
  }
  trace_folder(const trace_folder&) = delete;
  trace_folder& operator=(const trace_folder&) = delete;
  bool ready() const { return ready_; }
  // Of the file, which comes with the first record.
  std::uint64_t bytes() const {
    const fs::path file = fs::path(name_) / "trace";
    return fs::exists(file) ? fs::file_size(file) : 0;
  }

 private:
  std::string name_;
  bool ready_ = false;
};

// A process has one trace.
const trace_folder& the_folder() {
  static const trace_folder folder;
  return folder;
}

template <sve_mem_ref_t next(std::uint64_t)>
void trace_records(benchmark::State& state) {
  const trace_folder& folder = the_folder();
  if (!folder.ready()) {
    state.SkipWithError("no trace can be written to the temporary folder");
    return;
  }
  const std::uint64_t before = folder.bytes();
  std::uint64_t i = 0;
  for ([[maybe_unused]] const auto iteration : state) {
    sve_mem_ref_t record = next(i++);
    record.count = incr_count();
    trace_mem(record);
  }
  state.SetItemsProcessed(state.iterations());
  const auto records = static_cast<double>(state.iterations()) * state.threads();
  if (state.thread_index() == 0)
    state.counters["bytes_a_record"] = static_cast<double>(folder.bytes() - before) / records;
}

// The number of records is fixed, since each takes its room on the disk. Items a second are those of one thread's
// processor time.
BENCHMARK(trace_records<quern::next_of_loop>)
    ->Name("trace_records/loop")
    ->Iterations(20'000'000)
    ->Threads(1)
    ->Threads(2);
BENCHMARK(trace_records<quern::next_of_gather>)
    ->Name("trace_records/gather")
    ->Iterations(20'000'000)
    ->Threads(1)
    ->Threads(2);

}  // namespace
