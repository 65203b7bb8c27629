// What a trace record costs: its count and its way into the file, which is made in the temporary folder and removed.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "sve/memory/trace.h"

namespace {

namespace fs = std::filesystem;

class trace_folder {
 public:
  trace_folder() : name_((fs::temp_directory_path() / "quern_bench.XXXXXX").string()) {
    if (mkdtemp(name_.data()) == nullptr) return;
    setenv("QUERN_TRACE", (fs::path(name_) / "trace").c_str(), 1);
    ready = sve_init(0, "quern_bench");
  }
  ~trace_folder() {
    std::error_code ignored;
    fs::remove_all(name_, ignored);
  }
  trace_folder(const trace_folder&) = delete;
  trace_folder& operator=(const trace_folder&) = delete;
  bool ready = false;

 private:
  std::string name_;
};

void trace_records(benchmark::State& state) {
  static const trace_folder folder;
  if (!folder.ready) {
    state.SkipWithError("no trace can be written to the temporary folder");
    return;
  }
  sve_mem_ref_t record{};
  record.kind = MEM_LOAD;
  record.size = 256;
  for ([[maybe_unused]] const auto iteration : state) {
    record.count = incr_count();
    record.addr += 256;
    trace_mem(record);
  }
  state.SetItemsProcessed(state.iterations());
}

// The number of records is fixed, since each takes its room on the disk.
BENCHMARK(trace_records)->Iterations(500'000)->Repetitions(3)->UseRealTime()->Threads(1)->Threads(2);

}  // namespace
