// quern trace stats: what the accesses of a trace have in common, by code place, thread or region.
#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <vector>

#include "tools/access_stats.h"
#include "tools/trace_commands.h"

namespace quern {
namespace {

constexpr std::size_t most_rows = 4096;  // those that come later are summed up in one

struct stats_row {
  std::string name;
  access_stats stats;
};

struct stats_table {
  access_stats total;
  std::vector<stats_row> rows;  // most records first
};

std::uint64_t key_of(const trace_record& record, std::uint64_t region, stats_key by) {
  switch (by) {
    case stats_key::thread: return record.thread;
    case stats_key::region: return region;
    case stats_key::place: break;
  }
  return record.pc;
}

std::string name_of(std::uint64_t key, stats_key by) {
  if (by == stats_key::place) return fmt::format("{:#x}", key);
  return by == stats_key::region && key == 0 ? "outside" : std::to_string(key);
}

stats_table count(filtered_records& records, stats_key by) {
  stats_table table;
  std::map<std::uint64_t, access_stats> rows;
  access_stats others;
  stride_memory strides;
  while (const std::optional<trace_record> record = records.next()) {
    if (record->kind != trace_kind::load && record->kind != trace_kind::store) continue;
    const std::optional<std::int64_t> stride = strides.stride_of(*record);
    table.total.add(*record, stride);
    const std::uint64_t key = key_of(*record, records.region(), by);
    const auto known = rows.find(key);
    access_stats& row = known != rows.end() ? known->second : rows.size() < most_rows ? rows[key] : others;
    row.add(*record, stride);
  }
  for (auto& [key, stats] : rows) table.rows.push_back({name_of(key, by), std::move(stats)});
  if (others.records != 0) table.rows.push_back({"others", std::move(others)});
  std::stable_sort(table.rows.begin(), table.rows.end(),
                   [](const stats_row& a, const stats_row& b) { return a.stats.records > b.stats.records; });
  return table;
}

std::uint64_t bytes_of(const access_stats& stats) { return stats.loaded_bytes + stats.stored_bytes; }

double percent(std::uint64_t part, std::uint64_t whole) {
  return whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

std::string stride_text(const access_stats& stats) {
  const auto most = stats.strides.most();
  return most ? fmt::format("{:+}", most->number) : "mixed";
}

std::string count_text(const distinct_count& count) {
  return fmt::format("{}{}", count.is_exact() ? "" : "about ", count.count());
}

void line(std::string_view name, const std::string& value) { fmt::print("{:<15}{}\n", name, value); }

void print_total(const access_stats& total) {
  const auto share = [&](std::uint64_t part) {
    return fmt::format("{} ({:.1f} %)", part, percent(part, total.records));
  };
  line("accesses", fmt::format("{} records of {} instructions", total.records, total.instructions));
  line("  loads", fmt::format("{}, of {} bytes", share(total.loads), total.loaded_bytes));
  line("  stores", fmt::format("{}, of {} bytes", share(total.stores), total.stored_bytes));
  line("  lane by lane", fmt::format("{}: gathers, scatters and structures", share(total.lane_records)));
  line("footprint", fmt::format("{} lines of {} bytes, {} pages of {}", count_text(total.lines),
                                access_stats::line_bytes, count_text(total.pages), access_stats::page_bytes));
  line("across lines", share(total.across_lines));
  line("across pages", share(total.across_pages));
  for (const auto& [size, records] : total.sizes)
    line(size == total.sizes.begin()->first ? "sizes" : "", fmt::format("up to {} bytes: {}", size, share(records)));
}

void print_text(const stats_table& table, stats_key by, std::size_t top) {
  constexpr const char* headings[] = {"place", "thread", "region"};
  print_total(table.total);
  const std::size_t shown = std::min(top, table.rows.size());
  if (shown == 0) return;
  fmt::print("\n   records      %        bytes  loads %      lines  stride  {}\n", headings[static_cast<int>(by)]);
  for (std::size_t i = 0; i != shown; ++i) {
    const auto& [name, stats] = table.rows[i];
    fmt::print("{:>10} {:>6.1f} {:>12} {:>8.1f} {:>10} {:>7}  {}\n", stats.records,
               percent(stats.records, table.total.records), bytes_of(stats), percent(stats.loads, stats.records),
               stats.lines.count(), stride_text(stats), name);
  }
  if (shown != table.rows.size()) fmt::print("({} more: see --top)\n", table.rows.size() - shown);
}

void print_csv(const stats_table& table, stats_key by, std::size_t top) {
  constexpr const char* headings[] = {"pc", "thread", "region"};
  fmt::print(
      "{},records,instructions,lane_records,loads,stores,loaded_bytes,stored_bytes,lines,pages,across_lines,"
      "across_pages,stride,stride_records\n",
      headings[static_cast<int>(by)]);
  for (std::size_t i = 0; i != std::min(top, table.rows.size()); ++i) {
    const auto& [name, s] = table.rows[i];
    const auto most = s.strides.most();
    fmt::print("{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", name, s.records, s.instructions, s.lane_records, s.loads,
               s.stores, s.loaded_bytes, s.stored_bytes, s.lines.count(), s.pages.count(), s.across_lines,
               s.across_pages, most ? std::to_string(most->number) : "", most ? most->count : 0);
  }
}

nlohmann::ordered_json json_of(const access_stats& stats) {
  nlohmann::ordered_json sizes = nlohmann::ordered_json::object();
  for (const auto& [size, records] : stats.sizes) sizes[std::to_string(size)] = records;
  nlohmann::ordered_json object = {{"records", stats.records},
                                   {"instructions", stats.instructions},
                                   {"lane_records", stats.lane_records},
                                   {"loads", stats.loads},
                                   {"stores", stats.stores},
                                   {"loaded_bytes", stats.loaded_bytes},
                                   {"stored_bytes", stats.stored_bytes},
                                   {"lines", stats.lines.count()},
                                   {"pages", stats.pages.count()},
                                   {"across_lines", stats.across_lines},
                                   {"across_pages", stats.across_pages},
                                   {"sizes", sizes}};
  if (const auto most = stats.strides.most()) object["stride"] = {{"bytes", most->number}, {"records", most->count}};
  return object;
}

void print_json(const stats_table& table, stats_key by, std::size_t top) {
  constexpr const char* keys[] = {"pc", "thread", "region"};
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i != std::min(top, table.rows.size()); ++i) {
    nlohmann::ordered_json row = {{keys[static_cast<int>(by)], table.rows[i].name}};
    row.update(json_of(table.rows[i].stats));
    rows.push_back(std::move(row));
  }
  const nlohmann::ordered_json all = {{"total", json_of(table.total)}, {"rows", rows}};
  fmt::print("{}\n", all.dump(2));
}

}  // namespace

void print_trace_stats(trace_reader& reader, const trace_filter& filter, const stats_options& options) {
  filtered_records records(reader, filter);
  const stats_table table = count(records, options.by);
  switch (options.format) {
    case stats_format::text: return print_text(table, options.by, options.top);
    case stats_format::csv: return print_csv(table, options.by, options.top);
    case stats_format::json: return print_json(table, options.by, options.top);
  }
}

}  // namespace quern
