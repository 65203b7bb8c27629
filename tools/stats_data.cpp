// A line or an object a row.
#include "tools/stats_data.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace quern {
namespace {

using json = nlohmann::ordered_json;

// The numbers that CSV has, by their names in both formats.
std::vector<std::pair<const char*, std::uint64_t>> numbers_of(const access_stats& s) {
  return {{"records", s.records},
          {"instructions", s.instructions},
          {"loads", s.loads},
          {"stores", s.stores},
          {"loaded_bytes", s.loaded_bytes},
          {"stored_bytes", s.stored_bytes},
          {"lane_loads", s.lane_loads},
          {"lane_load_instructions", s.lane_load_instructions},
          {"lane_stores", s.lane_stores},
          {"lane_store_instructions", s.lane_store_instructions},
          {"whole_vectors", s.whole_vectors},
          {"lines", s.lines.count()},
          {"pages", s.pages.count()},
          {"across_lines", s.across_lines},
          {"across_pages", s.across_pages},
          {"known_records", s.known_records},
          {"elements", s.elements},
          {"element_bytes", s.element_bytes}};
}

std::string name_columns(stats_key by) { return by == stats_key::place ? "pc,place,source" : name_of(by); }

std::string name_fields(const stats_row& row, stats_key by) {
  if (by != stats_key::place) return csv_field(row.name);
  return fmt::format("{:#x},{},{}", row.pc, csv_field(row.name), csv_field(row.source));
}

template <class Histogram>
void add_bins(json& bins, const Histogram& histogram, bool is_backward) {
  for (unsigned bin = 0; bin != Histogram::bins; ++bin) {
    if (histogram.counts[bin] == 0) continue;
    json each = {{"from", Histogram::lowest(bin)}, {"to", Histogram::highest(bin)}};
    if (is_backward) each["backward"] = true;
    each["records"] = histogram.counts[bin];
    bins.push_back(std::move(each));
  }
}

json reuse_of(const access_stats& stats) {
  using histogram = decltype(stats.reuse);
  json bins = json::array();
  for (unsigned bin = 0; bin != reuse_distance::bins; ++bin) {
    if (stats.reuse.counts[bin] == 0) continue;
    json each = {{"from", histogram::lowest(bin)}};
    if (bin == reuse_distance::far)
      each["or_first"] = true;
    else
      each["to"] = histogram::highest(bin);
    each["accesses"] = stats.reuse.counts[bin];
    bins.push_back(std::move(each));
  }
  return bins;
}

}  // namespace

std::string csv_field(const std::string& text) {
  if (text.find_first_of(",\"\n\r") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

json json_of(const access_stats& stats) {
  json object;
  for (const auto& [name, number] : numbers_of(stats)) object[name] = number;
  json sizes = json::object();
  for (const auto& [size, records] : stats.sizes) sizes[std::to_string(size)] = records;
  object["sizes"] = std::move(sizes);
  json element_sizes = json::object();
  for (const auto& [bytes, elements] : stats.element_sizes) element_sizes[std::to_string(bytes)] = elements;
  object["element_sizes"] = std::move(element_sizes);
  if (const auto most = stats.strides.most()) object["stride"] = {{"bytes", most->number}, {"records", most->count}};
  json strides = json::array();
  add_bins(strides, stats.backward_strides, true);
  add_bins(strides, stats.forward_strides, false);
  object["strides"] = std::move(strides);
  object["reuse_distance"] = reuse_of(stats);
  return object;
}

json json_name(const stats_row& row, stats_key by) {
  if (by != stats_key::place) return {{name_of(by), row.name}};
  return {{"pc", fmt::format("{:#x}", row.pc)}, {"place", row.name}, {"source", row.source}};
}

std::string json_text(const json& value) { return value.dump(2, ' ', false, json::error_handler_t::replace); }

void print_stats_csv(const stats_table& table, stats_key by, std::size_t top) {
  fmt::print("{}", name_columns(by));
  for (const auto& [name, number] : numbers_of({})) fmt::print(",{}", name);
  fmt::print(",stride,stride_records\n");
  for (std::size_t i = 0; i != std::min(top, table.rows.size()); ++i) {
    const stats_row& row = table.rows[i];
    fmt::print("{}", name_fields(row, by));
    for (const auto& [name, number] : numbers_of(row.stats)) fmt::print(",{}", number);
    const auto most = row.stats.strides.most();
    fmt::print(",{},{}\n", most ? std::to_string(most->number) : "", most ? most->count : 0);
  }
}

void print_stats_json(const stats_table& table, stats_key by, std::size_t top) {
  json rows = json::array();
  for (std::size_t i = 0; i != std::min(top, table.rows.size()); ++i) {
    json row = json_name(table.rows[i], by);
    row.update(json_of(table.rows[i].stats));
    rows.push_back(std::move(row));
  }
  fmt::print("{}\n", json_text({{"total", json_of(table.total)}, {"rows", rows}}));
}

}  // namespace quern
