#include "tests/support/trace_recorder.h"

#include <mutex>
#include <tuple>

namespace {

std::mutex lock;
std::vector<sve_mem_ref_t> records;
std::uint64_t next_count;
std::vector<bool> tracing;  // at each call

auto fields(const sve_mem_ref_t& r) {
  return std::tuple(r.count, r.tid, r.group, std::uint32_t{r.kind}, r.size, r.addr, r.pc);
}

}  // namespace

bool operator==(const sve_mem_ref_t& a, const sve_mem_ref_t& b) { return fields(a) == fields(b); }

std::ostream& operator<<(std::ostream& out, const sve_mem_ref_t& r) {
  return out << "{count " << r.count << ", tid " << r.tid << ", group " << r.group << ", kind " << std::uint32_t{r.kind}
             << ", size " << r.size << ", addr 0x" << std::hex << r.addr << ", pc 0x" << r.pc << std::dec << "}";
}

bool sve_init(std::uint64_t, const char*) { return true; }
void sve_exit() {}

std::uint64_t incr_count() {
  const std::lock_guard hold(lock);
  tracing.push_back(enable_trace);
  return next_count++;
}

void trace_mem(const sve_mem_ref_t& record) {
  const std::lock_guard hold(lock);
  tracing.push_back(enable_trace);
  records.push_back(record);
}

namespace quern {

void start_recording() {
  const std::lock_guard hold(lock);
  records.clear();
  tracing.clear();
  next_count = 0;
}

std::vector<sve_mem_ref_t> recorded_trace() {
  const std::lock_guard hold(lock);
  return records;
}

std::uint64_t counts_given() {
  const std::lock_guard hold(lock);
  return next_count;
}

std::vector<bool> tracing_at_calls() {
  const std::lock_guard hold(lock);
  return tracing;
}

}  // namespace quern
