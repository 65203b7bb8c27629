// Counting accesses.
#include "tools/access_stats.h"

#include <algorithm>
#include <bit>

#include "sve/memory/trace.h"

namespace quern {
namespace {

constexpr std::uint64_t most_noted_units = 1 << 16;  // of an access whose size can't be true

void note_units(distinct_count& units, std::uint64_t first, std::uint64_t last, std::uint64_t unit) {
  const std::uint64_t end = std::min(last / unit, first / unit + most_noted_units);
  for (std::uint64_t number = first / unit; number <= end; ++number) units.add(number);
}

}  // namespace

void frequent_number::add(std::int64_t number) {
  ++numbers_;
  const auto same = std::find_if(entries_.begin(), entries_.end(),
                                 [&](const entry& e) { return e.count != 0 && e.number == number; });
  if (same != entries_.end()) {
    ++same->count;
    return;
  }
  const auto unused = std::find_if(entries_.begin(), entries_.end(), [](const entry& e) { return e.count == 0; });
  if (unused != entries_.end()) {
    *unused = {number, 1};
    return;
  }
  for (entry& each : entries_) --each.count;
}

std::optional<frequent_number::entry> frequent_number::most() const {
  const auto found = std::max_element(entries_.begin(), entries_.end(),
                                      [](const entry& a, const entry& b) { return a.count < b.count; });
  return found->count == 0 || found->count * 8 < numbers_ ? std::nullopt : std::optional(*found);
}

void access_stats::add(const trace_record& record, const access_history& history, std::uint64_t vector_bytes) {
  const bool is_load = record.kind == trace_kind::load, is_lane = record.group != 0;
  const bool is_first = !is_lane || (record.group & trace_group_first) != 0;
  ++records;
  instructions += is_first;
  ++(is_load ? loads : stores);
  (is_load ? loaded_bytes : stored_bytes) += record.size;
  (is_load ? lane_loads : lane_stores) += is_lane;
  (is_load ? lane_load_instructions : lane_store_instructions) += is_lane && is_first;
  whole_vectors += !is_lane && record.size == vector_bytes;
  ++sizes[std::bit_ceil(std::min(record.size, std::uint64_t{1} << 63))];
  if (history.stride) {
    strides.add(*history.stride);
    const auto distance = static_cast<std::uint64_t>(*history.stride);
    if (*history.stride < 0)
      backward_strides.add(0 - distance);
    else
      forward_strides.add(distance);
  }
  for (unsigned i = 0; i != history.lines; ++i) reuse.add_to_bin(history.reuse[i]);
  if (record.size == 0) return;
  const std::uint64_t last = record.last_byte();
  across_lines += record.addr / line_bytes != last / line_bytes;
  across_pages += record.addr / page_bytes != last / page_bytes;
  note_units(lines, record.addr, last, line_bytes);
  note_units(pages, record.addr, last, page_bytes);
}

std::optional<std::int64_t> stride_memory::stride_of(const trace_record& record) {
  if (last_.size() >= most_places) last_.clear();
  const auto [at, is_new] = last_.try_emplace({record.thread, record.pc}, record.addr);
  if (is_new) return std::nullopt;
  const auto stride = static_cast<std::int64_t>(record.addr - at->second);
  at->second = record.addr;
  return stride;
}

access_history access_memory::next(const trace_record& record) {
  access_history history;
  history.stride = strides_.stride_of(record);
  if (record.size == 0) return history;
  const std::uint64_t first = record.addr / access_stats::line_bytes;
  const std::uint64_t lines = record.last_byte() / access_stats::line_bytes - first + 1;
  history.lines = static_cast<unsigned>(std::min<std::uint64_t>(lines, access_history::most_lines));
  for (unsigned i = 0; i != history.lines; ++i) history.reuse[i] = static_cast<std::uint8_t>(reuse_.access(first + i));
  return history;
}

void access_stats::add_elements(std::uint64_t count, std::uint32_t bytes_each) {
  ++known_records;
  elements += count;
  element_bytes += count * bytes_each;
  element_sizes[bytes_each] += count;
}

}  // namespace quern
