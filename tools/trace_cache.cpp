// quern trace cache: what a hierarchy of caches would make of a trace's accesses.
#include <fmt/core.h>

#include <bit>
#include <charconv>
#include <map>
#include <optional>
#include <vector>

#include "tools/cache_model.h"
#include "tools/printable.h"
#include "tools/stats_table.h"
#include "tools/trace_commands.h"
#include "tools/user_error.h"

namespace quern {
namespace {

constexpr std::uint64_t most_access_bytes = 1 << 20;  // what is believed of a size

// Accesses by the level that had their line; the last is memory.
struct level_counts {
  std::vector<std::uint64_t> found;

  std::uint64_t reaching(std::size_t level) const {
    std::uint64_t sum = 0;
    for (std::size_t i = level; i != found.size(); ++i) sum += found[i];
    return sum;
  }
};

// "32K", "1M" or a number of bytes; 0 if it is none.
std::uint64_t parse_bytes(std::string_view text) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const std::string_view unit(end, static_cast<std::size_t>(text.data() + text.size() - end));
  if (error != std::errc{} || number > std::uint64_t{1} << 40) return 0;
  return unit.empty() ? number : unit == "K" ? number << 10 : unit == "M" ? number << 20 : 0;
}

cache_shape parse_level(const std::string& text) {
  std::vector<std::uint64_t> numbers;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t to = std::min(text.find(',', from), text.size());
    numbers.push_back(parse_bytes(std::string_view(text).substr(from, to - from)));
    from = to + 1;
  }
  numbers.resize(std::max<std::size_t>(numbers.size(), 3));
  const cache_shape shape{numbers[0], numbers[1], numbers[2]};
  constexpr std::uint64_t most_lines = 1 << 26;
  const bool can_be = numbers.size() == 3 && shape.ways != 0 && shape.ways <= 1024 &&
                      std::has_single_bit(shape.line_bytes) && shape.bytes / shape.line_bytes <= most_lines &&
                      shape.sets() != 0 && shape.bytes % (shape.ways * shape.line_bytes) == 0;
  if (!can_be)
    throw user_error{
        fmt::format("--level: '{}' is no cache: give its bytes, ways, and bytes a line (a power of two), as "
                    "in 32K,8,64",
                    text),
        status_usage};
  return shape;
}

std::vector<cache_shape> parse_levels(const std::vector<std::string>& texts) {
  std::vector<cache_shape> shapes;
  shapes.reserve(texts.size());
  for (const std::string& text : texts) shapes.push_back(parse_level(text));
  for (const cache_shape& shape : shapes)
    if (shape.line_bytes != shapes.front().line_bytes)
      throw user_error{"--level: all caches must have lines of the same size", status_usage};
  return shapes;
}

void print_levels(const std::vector<std::string>& names, const level_counts& total) {
  fmt::print("{:<22}{:>12}{:>12}{:>12}{:>9}\n", "cache", "accesses", "hits", "misses", "misses %");
  for (std::size_t level = 0; level != names.size(); ++level) {
    const std::uint64_t accesses = total.reaching(level), misses = total.reaching(level + 1);
    fmt::print("{:<22}{:>12}{:>12}{:>12}{:>9.1f}\n", fmt::format("L{} {}", level + 1, names[level]), accesses,
               accesses - misses, misses, percent(misses, accesses));
  }
}

// By the instruction's address and the number of the module that had been loaded there, or by the array's number.
using row_key = std::pair<std::uint64_t, std::size_t>;
using row_table = std::map<row_key, level_counts>;

template <class Name>
void print_rows(const row_table& table, std::string_view heading, const Name& name, std::size_t levels,
                std::size_t top) {
  std::vector<std::pair<row_key, const level_counts*>> rows;
  rows.reserve(table.size());
  for (const auto& [key, counts] : table) rows.emplace_back(key, &counts);
  std::stable_sort(rows.begin(), rows.end(),
                   [](const auto& a, const auto& b) { return a.second->reaching(1) > b.second->reaching(1); });
  fmt::print("\n{:>12}", "accesses");
  for (std::size_t level = 1; level <= levels; ++level) fmt::print("{:>12}", fmt::format("L{} misses", level));
  fmt::print("  {}\n", heading);
  for (std::size_t i = 0; i != std::min(top, rows.size()); ++i) {
    for (std::size_t level = 0; level <= levels; ++level) fmt::print("{:>12}", rows[i].second->reaching(level));
    fmt::print("  {}\n", printable(name(rows[i].first)));
  }
}

}  // namespace

void print_trace_cache(trace_reader& reader, const trace_filter& filter, const cache_options& options) {
  const std::vector<cache_shape> shapes = parse_levels(options.levels);
  const std::optional<array_names> arrays = find_arrays(options.by_array, reader, filter, options.arrays);
  cache_hierarchy caches(shapes);
  const level_counts none{std::vector<std::uint64_t>(shapes.size() + 1)};
  level_counts total = none;
  row_table rows;
  filtered_records records(reader, filter);
  code_names& code = records.names();
  while (const std::optional<trace_record> record = records.next()) {
    if (!record->is_access() || record->size == 0) continue;
    const row_key key =
        arrays ? row_key{arrays->array_of(*record), 0} : row_key{record->pc, code.module_of(record->pc, record->count)};
    level_counts& row = rows.try_emplace(key, none).first->second;
    const std::uint64_t line = caches.line_bytes();
    const std::uint64_t lines = (record->addr % line + std::min(record->size, most_access_bytes) - 1) / line + 1;
    for (std::uint64_t i = 0; i != lines; ++i) {
      const std::size_t level = caches.access(record->addr + i * line);
      ++total.found[level];
      ++row.found[level];
    }
  }
  print_levels(options.levels, total);
  if (rows.empty()) return;
  const auto array_text = [&](const row_key& key) { return arrays->name(key.first); };
  const auto place_text = [&](const row_key& key) { return code.place(key.first, key.second).text(); };
  if (arrays)
    print_rows(rows, "array", array_text, shapes.size(), options.top);
  else
    print_rows(rows, "place", place_text, shapes.size(), options.top);
}

}  // namespace quern
