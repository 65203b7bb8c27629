// quern trace diff: the accesses of two traces side by side.
#include <fmt/core.h>

#include <algorithm>
#include <map>

#include "tools/stats_data.h"
#include "tools/stats_text.h"
#include "tools/trace_commands.h"

namespace quern {
namespace {

// A row of either table, or of both.
struct row_pair {
  const stats_row *a = nullptr, *b = nullptr;

  const stats_row& any() const { return a != nullptr ? *a : *b; }
  std::uint64_t most() const { return std::max(records(a), records(b)); }
  static std::uint64_t records(const stats_row* row) { return row != nullptr ? row->stats.records : 0; }
};

std::vector<row_pair> pairs_of(const stats_table& a, const stats_table& b) {
  std::map<std::string, row_pair> by_name;
  for (const stats_row& row : a.rows) by_name[row.name].a = &row;
  for (const stats_row& row : b.rows) by_name[row.name].b = &row;
  std::vector<row_pair> pairs;
  pairs.reserve(by_name.size());
  for (const auto& [name, pair] : by_name) pairs.push_back(pair);
  std::ranges::stable_sort(pairs, std::greater{}, &row_pair::most);
  return pairs;
}

std::string change_text(std::uint64_t a, std::uint64_t b) {
  if (a == b) return "=";
  if (a == 0) return "new";
  return fmt::format("{:+.1f} %", 100 * (static_cast<double>(b) / static_cast<double>(a) - 1));
}

void print_line(std::string_view name, std::uint64_t a, std::uint64_t b) {
  fmt::print("{:<16}{:>16}{:>16}{:>12}\n", name, a, b, change_text(a, b));
}

// Line touches that a cache of so many lines would have missed.
std::uint64_t beyond(const access_stats& stats, unsigned bits) {
  std::uint64_t sum = 0;
  for (unsigned bin = bits + 1; bin != reuse_distance::bins; ++bin) sum += stats.reuse.counts[bin];
  return sum;
}

void print_totals(const access_stats& a, const access_stats& b) {
  fmt::print("{:<16}{:>16}{:>16}{:>12}\n", "", "A", "B", "change");
  print_line("records", a.records, b.records);
  print_line("instructions", a.instructions, b.instructions);
  print_line("loads", a.loads, b.loads);
  print_line("stores", a.stores, b.stores);
  print_line("bytes", bytes_of(a), bytes_of(b));
  print_line("lane loads", a.lane_loads, b.lane_loads);
  print_line("lane stores", a.lane_stores, b.lane_stores);
  print_line("full vectors", a.whole_vectors, b.whole_vectors);
  print_line("lines", a.lines.count(), b.lines.count());
  print_line("pages", a.pages.count(), b.pages.count());
  print_line("across lines", a.across_lines, b.across_lines);
  print_line("across pages", a.across_pages, b.across_pages);
  print_line("reuse >=512", beyond(a, 9), beyond(b, 9));
  print_line("reuse >=16K", beyond(a, 14), beyond(b, 14));
}

void print_text(const stats_table& a, const stats_table& b, stats_key by, std::size_t top) {
  print_totals(a.total, b.total);
  const std::vector<row_pair> pairs = pairs_of(a, b);
  if (pairs.empty()) return;
  constexpr std::size_t name_width = 40;
  fmt::print("\n{:>12}{:>12}{:>12}  {}\n", "records in A", "in B", "change", name_of(by));
  const std::size_t shown = std::min(top, pairs.size());
  for (std::size_t i = 0; i != shown; ++i) {
    const std::uint64_t in_a = row_pair::records(pairs[i].a), in_b = row_pair::records(pairs[i].b);
    fmt::print("{:>12}{:>12}{:>12}  {}\n", in_a, in_b, change_text(in_a, in_b), row_text(pairs[i].any(), name_width));
  }
  if (shown != pairs.size()) fmt::print("({} more: see --top)\n", pairs.size() - shown);
}

void print_csv(const stats_table& a, const stats_table& b, stats_key by, std::size_t top) {
  const std::vector<row_pair> pairs = pairs_of(a, b);
  fmt::print("{},records_a,records_b,bytes_a,bytes_b,lines_a,lines_b\n", name_of(by));
  const access_stats none;
  for (std::size_t i = 0; i != std::min(top, pairs.size()); ++i) {
    const access_stats& in_a = pairs[i].a != nullptr ? pairs[i].a->stats : none;
    const access_stats& in_b = pairs[i].b != nullptr ? pairs[i].b->stats : none;
    fmt::print("{},{},{},{},{},{},{}\n", csv_field(pairs[i].any().name), in_a.records, in_b.records, bytes_of(in_a),
               bytes_of(in_b), in_a.lines.count(), in_b.lines.count());
  }
}

void print_json(const stats_table& a, const stats_table& b, stats_key by, std::size_t top) {
  const std::vector<row_pair> pairs = pairs_of(a, b);
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i != std::min(top, pairs.size()); ++i) {
    nlohmann::ordered_json row = {{name_of(by), pairs[i].any().name}};
    if (pairs[i].a != nullptr) row["a"] = json_of(pairs[i].a->stats);
    if (pairs[i].b != nullptr) row["b"] = json_of(pairs[i].b->stats);
    rows.push_back(std::move(row));
  }
  fmt::print("{}\n", json_text({{"a", json_of(a.total)}, {"b", json_of(b.total)}, {"rows", rows}}));
}

}  // namespace

void print_trace_diff(trace_reader& first, trace_reader& second, const trace_filter& filter,
                      const stats_options& options) {
  const stats_table a = count_accesses(first, filter, options.by, options.arrays);
  const stats_table b = count_accesses(second, filter, options.by, options.arrays);
  switch (options.format) {
    case stats_format::text: return print_text(a, b, options.by, options.top);
    case stats_format::csv: return print_csv(a, b, options.by, options.top);
    case stats_format::json: return print_json(a, b, options.by, options.top);
  }
}

}  // namespace quern
