// Sorting accesses into rows.
#include "tools/stats_table.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

namespace quern {
namespace {

class table_builder {
 public:
  // `arrays` is needed for rows by array alone.
  table_builder(filtered_records& records, stats_key by, const std::optional<array_names>& arrays)
      : records_(records), by_(by), arrays_(arrays) {}

  access_stats& row_of(const trace_record& record) {
    const key wanted = key_of(record);
    if (last_ != nullptr && last_key_ == wanted) return *last_;
    constexpr std::size_t most_keys = 1 << 16;
    if (rows_by_key_.size() == most_keys) rows_by_key_.clear();
    const auto [at, is_new] = rows_by_key_.try_emplace(wanted, nullptr);
    if (is_new) at->second = &named_row(wanted);
    last_key_ = wanted;
    last_ = at->second;
    return *last_;
  }
  std::vector<stats_row> take_rows() {
    std::vector<stats_row> rows;
    rows.reserve(rows_.size() + 1);
    for (auto& [name, row] : rows_) rows.push_back(std::move(*row));
    std::ranges::stable_sort(rows, std::greater{}, [](const stats_row& row) { return row.stats.records; });
    if (others_.stats.records != 0) rows.push_back(std::move(others_));
    return rows;
  }

 private:
  using key = std::pair<std::uint64_t, std::size_t>;  // the number it is counted by, and a pc's module

  key key_of(const trace_record& record) {
    switch (by_) {
      case stats_key::thread: return {record.thread, 0};
      case stats_key::region: return {records_.region(), 0};
      case stats_key::array: return {arrays_->array_of(record), 0};
      case stats_key::place:
      case stats_key::function: break;
    }
    return {record.pc, records_.names().module_of(record.pc, record.count)};
  }
  stats_row fresh_row(const key& wanted) const {
    const auto& [number, module] = wanted;
    const auto named = [](std::string name) { return stats_row{std::move(name), {}, 0, {}}; };
    switch (by_) {
      case stats_key::thread: return named(std::to_string(number));
      case stats_key::region: return named(number == 0 ? "outside" : std::to_string(number));
      case stats_key::array: return named(arrays_->name(number));
      case stats_key::function: return named(records_.names().place(number, module).function_text());
      case stats_key::place: break;
    }
    const code_place place = records_.names().place(number, module);
    return {place.text(), place.source, number, {}};
  }
  access_stats& named_row(const key& wanted) {
    stats_row row = fresh_row(wanted);
    if (const auto known = rows_.find(row.name); known != rows_.end()) return known->second->stats;
    if (rows_.size() == stats_table::most_rows) return others_.stats;
    const std::string name = row.name;
    return rows_.emplace(name, std::make_unique<stats_row>(std::move(row))).first->second->stats;
  }

  filtered_records& records_;
  stats_key by_;
  const std::optional<array_names>& arrays_;
  std::map<std::string, std::unique_ptr<stats_row>> rows_;
  std::map<key, access_stats*> rows_by_key_;
  stats_row others_{.name = "others", .source = {}, .pc = 0, .stats = {}};
  key last_key_{};
  access_stats* last_ = nullptr;
};

}  // namespace

stats_table count_accesses(trace_reader& reader, const trace_filter& filter, stats_key by,
                           const std::vector<given_array>& given) {
  const std::optional<array_names> arrays = find_arrays(by == stats_key::array, reader, filter, given);
  stats_table table;
  filtered_records records(reader, filter);
  table_builder rows(records, by, arrays);
  access_memory memory;
  while (const std::optional<trace_record> record = records.next()) {
    if (!record->is_access()) continue;
    const access_history history = memory.next(*record);
    const auto elements = records.elements_of(*record);
    for (access_stats* const counted : {&table.total, &rows.row_of(*record)}) {
      counted->add(*record, history, reader.header().vector_bytes);
      if (elements) counted->add_elements(elements->count, elements->form.memory_bytes);
    }
  }
  table.rows = rows.take_rows();
  return table;
}

double percent(std::uint64_t part, std::uint64_t whole) {
  return whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

}  // namespace quern
