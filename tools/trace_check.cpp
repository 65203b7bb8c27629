// quern trace check: whether a trace is whole, and its records are what the emulator writes.
#include <fmt/core.h>

#include <map>
#include <vector>

#include "sve/memory/trace.h"
#include "tools/trace_commands.h"

namespace quern {
namespace {

class problems {
 public:
  void note(const std::string& text) {
    constexpr unsigned most_shown = 20;
    if (++number_ <= most_shown) fmt::print("{}\n", text);
    if (number_ == most_shown + 1) fmt::print("...\n");
  }
  void note_count(std::uint64_t count, std::string_view what) {
    if (count != 0) note(fmt::format("{} {}", count, what));
  }
  std::uint64_t number() const { return number_; }

 private:
  std::uint64_t number_ = 0;
};

// The groups of lane records that a thread is in: more than one where a signal handler traces between two lanes.
class open_groups {
 public:
  // What is wrong with the record's place in a group, or empty.
  std::string_view step(const trace_record& record) {
    constexpr std::uint32_t all_bits = trace_group_first | trace_group_member | trace_group_last;
    if (record.group == 0) return {};
    if ((record.group & ~all_bits) != 0 || (record.group & trace_group_member) == 0)
      return "has group bits that can't be";
    if ((record.group & trace_group_first) != 0)
      groups_.push_back(record);
    else if (groups_.empty())
      return "goes on with a group that was not begun";
    const trace_record& begun = groups_.back();
    const bool is_same = begun.pc == record.pc && begun.kind == record.kind && begun.size == record.size;
    if ((record.group & trace_group_last) != 0) groups_.pop_back();
    return is_same ? "" : "differs from its group in place, kind or size";
  }
  bool empty() const { return groups_.empty(); }

 private:
  std::vector<trace_record> groups_;  // the first record of each
};

std::string_view fault_of(const trace_record& record, std::uint32_t vector_bytes) {
  switch (record.kind) {
    case trace_kind::start_marker:
    case trace_kind::stop_marker: return record.group == 0 && record.pc == 0 ? "" : "is a marker with a group or place";
    case trace_kind::unknown: return "is of no known kind";
    case trace_kind::load:
    case trace_kind::store: break;
  }
  if (record.size == 0 || record.size > vector_bytes) return "has a size that no vector has";
  return record.addr + (record.size - 1) < record.addr ? "goes beyond the end of the address space" : "";
}

void check_losses(const trace_reader& reader, problems& found) {
  const trace_summary& summary = reader.summary();
  if (reader.is_cut()) found.note("the file is cut: it was longer once");
  if (reader.header().stop_error != 0) found.note("the trace stopped before the program");
  found.note_count(summary.damaged_chunks, "chunks are damaged");
  found.note_count(summary.incomplete, "records were being written when the process ended");
  found.note_count(summary.missing, "counts have no record");
}

}  // namespace

bool check_trace(trace_reader& reader, const trace_filter& filter) {
  problems found;
  check_losses(reader, found);
  std::map<std::uint32_t, open_groups> threads;
  std::optional<std::uint64_t> last_count;
  std::uint64_t checked = 0;
  filtered_records records(reader, filter);
  while (const std::optional<trace_record> record = records.next()) {
    ++checked;
    const auto note = [&](std::string_view what) {
      if (!what.empty()) found.note(fmt::format("record {} {}", record->count, what));
    };
    if (last_count == record->count) note("is there twice");
    last_count = record->count;
    note(fault_of(*record, reader.header().vector_bytes));
    note(threads[record->thread].step(*record));
  }
  for (const auto& [thread, groups] : threads)
    if (!groups.empty()) found.note(fmt::format("thread {} has a group that does not end", thread));
  if (found.number() == 0) fmt::print("{} records, all in order\n", checked);
  return found.number() == 0;
}

}  // namespace quern
