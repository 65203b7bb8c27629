// The two walks through a trace: the first finds which places there are in time, memory and code, the second counts
// what happens where.
#include "tools/plot/plot_data.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "tools/printable.h"
#include "tools/user_error.h"

namespace quern {
namespace {

constexpr std::size_t most_counted_places = 1 << 16;  // those that come later are not listed
constexpr std::uint64_t most_access_bytes = 1 << 16;  // what is believed of a size

bool is_drawn(const trace_record& record) { return record.is_access() && record.size != 0; }

std::uint64_t last_byte(const trace_record& record) {
  return std::min(record.last_byte() - record.addr, most_access_bytes - 1) + record.addr;
}

// What the first walk finds.
struct trace_extent {
  std::uint64_t first_time = ~std::uint64_t{0}, last_time = 0;
  touched_ranges touched;
  struct counted_place {
    std::uint64_t accesses = 0;
    std::size_t module = 0;  // of the first
  };
  std::unordered_map<std::uint64_t, counted_place> by_pc;
  std::vector<plot_place> hottest;
  std::vector<std::uint64_t> region_starts;
  std::uint64_t regions = 0;

  void note_region(std::uint64_t region, std::uint64_t time) {
    if (region <= regions) return;  // a start in a region that is open
    regions = region;
    if (region_starts.size() < plot_data::most_regions) region_starts.push_back(time);
  }
  void note_access(const trace_record& record, code_names& names) {
    first_time = std::min(first_time, record.count);
    last_time = std::max(last_time, record.count);
    touched.add(record.addr, last_byte(record));
    const auto known = by_pc.find(record.pc);
    if (known != by_pc.end())
      ++known->second.accesses;
    else if (by_pc.size() < most_counted_places)
      by_pc[record.pc] = {1, names.module_of(record.pc, record.count)};
  }
  void list_hottest(code_names& names) {
    std::vector<std::pair<std::uint64_t, counted_place>> counted(by_pc.begin(), by_pc.end());
    std::sort(counted.begin(), counted.end(), [](const auto& a, const auto& b) {
      return a.second.accesses != b.second.accesses ? a.second.accesses > b.second.accesses : a.first < b.first;
    });
    counted.resize(std::min(counted.size(), plot_data::most_places));
    for (const auto& [pc, found] : counted) {
      const code_place place = names.place(pc, found.module);
      hottest.push_back({pc, printable(place.text()), printable(place.source_text()), {}});
    }
  }
};

trace_extent extent_of(trace_reader& reader, const trace_filter& filter) {
  trace_extent extent;
  filtered_records records(reader, filter);
  while (const std::optional<trace_record> record = records.next()) {
    if (record->kind == trace_kind::start_marker) extent.note_region(records.region(), record->count);
    if (is_drawn(*record)) extent.note_access(*record, records.names());
  }
  extent.list_hottest(records.names());
  if (extent.hottest.empty()) throw user_error{"the trace has no accesses to plot, or the filters let none through"};
  return extent;
}

// Counts what the second walk meets.
class plot_counter {
 public:
  explicit plot_counter(plot_data& data) : data_(data) {
    for (const plot_place& place : data.places) index_.emplace(place.pc, index_.size());
  }
  void add(const trace_record& record) {
    const access_history history = history_.next(record);
    const std::size_t place = place_of(record.pc);
    data_.total.add(record, history, data_.vector_bytes);
    data_.places[place].stats.add(record, history, data_.vector_bytes);
    if (history.stride) data_.strides.add(*history.stride, record.kind == trace_kind::load);
    const std::uint64_t last = last_byte(record);
    for (std::uint64_t line = record.addr / data_.line_bytes; line <= last / data_.line_bytes; ++line)
      data_.footprint.add(record.count, line);
    draw(record.count, place, record.addr, last);
  }

 private:
  std::size_t place_of(std::uint64_t pc) {
    const auto found = index_.find(pc);
    if (found != index_.end()) return found->second;
    if (data_.places.size() == index_.size()) data_.places.push_back({0, "other places", {}, {}});
    return index_.size();
  }
  // Row by row. An access lies within one area, since those are made of whole accesses.
  void draw(std::uint64_t time, std::size_t place, std::uint64_t first, std::uint64_t last) {
    const address_area* const area = data_.layout.find(first);
    if (area == nullptr || last > area->last) return;  // the file has changed since the first walk
    for (std::uint64_t from = first;;) {
      const std::uint64_t row_end = std::min(last, from | ((std::uint64_t{1} << area->row_bits) - 1));
      data_.grid.add(time, static_cast<std::uint32_t>(place), area->row_of(from), row_end - from + 1);
      if (row_end == last) break;
      from = row_end + 1;
    }
  }

  plot_data& data_;
  access_memory history_;
  std::unordered_map<std::uint64_t, std::size_t> index_;  // in data_.places, by pc
};

}  // namespace

plot_data collect_plot_data(trace_reader& reader, const trace_filter& filter) {
  trace_extent extent = extent_of(reader, filter);
  plot_data data{.program = printable(reader.header().application),
                 .vector_bytes = reader.header().vector_bytes,
                 .first_time = extent.first_time,
                 .last_time = extent.last_time,
                 .total = {},
                 .places = std::move(extent.hottest),
                 .region_starts = extent.region_starts,
                 .layout = address_layout(extent.touched.ranges()),
                 .grid = {extent.first_time, extent.last_time},
                 .footprint = {extent.first_time, extent.last_time},
                 .strides = {}};
  reader.rewind();
  plot_counter counter(data);
  filtered_records records(reader, filter);
  while (const std::optional<trace_record> record = records.next())
    if (is_drawn(*record) && record->count >= data.first_time && record->count <= data.last_time) counter.add(*record);
  data.footprint.finish();
  return data;
}

}  // namespace quern
