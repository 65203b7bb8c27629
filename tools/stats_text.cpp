// The totals, the histograms that they have, and a line a row.
#include "tools/stats_text.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "tools/printable.h"

namespace quern {
namespace {

void line(std::string_view name, const std::string& value) { fmt::print("{:<15}{}\n", name, value); }

std::string count_text(const distinct_count& count) {
  return fmt::format("{}{}", count.is_exact() ? "" : "about ", count.count());
}

std::string stride_text(const access_stats& stats) {
  const auto most = stats.strides.most();
  return most ? fmt::format("{:+}", most->number) : "mixed";
}

// "64", "2K", "1M": powers of two, and one less than these as they are.
std::string short_number(std::uint64_t number) {
  constexpr const char* units[] = {"", "K", "M", "G", "T", "P", "E"};
  std::size_t unit = 0;
  for (; number >= 1024 && number % 1024 == 0; number /= 1024) ++unit;
  return fmt::format("{}{}", number, units[unit]);
}

template <class Histogram>
std::string range_text(unsigned bin) {
  const std::uint64_t low = Histogram::lowest(bin);
  if (bin < 2) return std::to_string(low);
  return bin == 2 ? "2 to 3" : fmt::format("{} to <{}", short_number(low), bin < 64 ? short_number(low * 2) : "16E");
}

// A line for each bin with a hundredth of all or more.
class histogram_lines {
 public:
  histogram_lines(std::string_view name, std::uint64_t all) : name_(name), all_(all) {}
  void add(const std::string& label, std::uint64_t count) {
    if (count == 0) return;
    if (count * 100 < all_) {
      rest_ += count;
      return;
    }
    print(label, count);
  }
  void finish() {
    if (rest_ != 0) print("others", rest_);
  }

 private:
  void print(const std::string& label, std::uint64_t count) {
    constexpr double bar_width = 28;
    const double share = percent(count, all_);
    const auto bar = static_cast<std::size_t>(std::lround(share / 100 * bar_width));
    line(name_,
         fmt::format("{:<14}{:>12} {:>5.1f} %{}{}", label, count, share, bar != 0 ? "  " : "", std::string(bar, '#')));
    name_ = "";
  }
  std::string_view name_;
  std::uint64_t all_, rest_ = 0;
};

std::string lanes_text(const std::string& share, std::uint64_t lanes, std::uint64_t instructions, const char* of) {
  if (instructions == 0) return share;
  return fmt::format("{}: of {} and structures, {:.1f} an instruction", share, of,
                     static_cast<double>(lanes) / static_cast<double>(instructions));
}

void print_counts(const access_stats& total) {
  const auto share = [&](std::uint64_t part) {
    return fmt::format("{} ({:.1f} %)", part, percent(part, total.records));
  };
  line("accesses", fmt::format("{} records of {} instructions", total.records, total.instructions));
  line("  loads", fmt::format("{}, of {} bytes", share(total.loads), total.loaded_bytes));
  line("  stores", fmt::format("{}, of {} bytes", share(total.stores), total.stored_bytes));
  line("  lane loads", lanes_text(share(total.lane_loads), total.lane_loads, total.lane_load_instructions, "gathers"));
  line("  lane stores",
       lanes_text(share(total.lane_stores), total.lane_stores, total.lane_store_instructions, "scatters"));
  line("  full vectors", share(total.whole_vectors));
  if (total.known_records != 0)
    line("elements",
         fmt::format("{}, of {} bytes in memory{}", total.elements, total.element_bytes,
                     total.known_records == total.records
                         ? ""
                         : fmt::format(" (of the {:.1f} % known)", percent(total.known_records, total.records))));
  line("footprint", fmt::format("{} lines of {} bytes, {} pages of {}", count_text(total.lines),
                                access_stats::line_bytes, count_text(total.pages), access_stats::page_bytes));
  line("across lines", share(total.across_lines));
  line("across pages", share(total.across_pages));
}

void print_histograms(const access_stats& total) {
  histogram_lines sizes("sizes", total.records);
  for (const auto& [size, records] : total.sizes) sizes.add(fmt::format("up to {}", size), records);
  sizes.finish();
  histogram_lines elements("element sizes", total.elements);
  for (const auto& [bytes, count] : total.element_sizes) elements.add(fmt::format("{}", bytes), count);
  elements.finish();

  using stride_histogram = decltype(total.forward_strides);
  std::uint64_t strides = 0;
  for (unsigned bin = 0; bin != stride_histogram::bins; ++bin)
    strides += total.forward_strides.counts[bin] + total.backward_strides.counts[bin];
  histogram_lines forward("strides", strides);
  for (unsigned bin = stride_histogram::bins; bin-- != 0;)
    forward.add("-(" + range_text<stride_histogram>(bin) + ")", total.backward_strides.counts[bin]);
  for (unsigned bin = 0; bin != stride_histogram::bins; ++bin)
    forward.add(range_text<stride_histogram>(bin), total.forward_strides.counts[bin]);
  forward.finish();

  using reuse_histogram = decltype(total.reuse);
  std::uint64_t touches = 0;
  for (const std::uint64_t count : total.reuse.counts) touches += count;
  histogram_lines reuse("reuse distance", touches);
  for (unsigned bin = 0; bin != reuse_distance::far; ++bin)
    reuse.add(range_text<reuse_histogram>(bin), total.reuse.counts[bin]);
  reuse.add("none, or >=1M", total.reuse.counts[reuse_distance::far]);
  reuse.finish();
}

std::string cut(const std::string& text, std::size_t width) {
  if (text.size() <= width) return text;
  const std::size_t end = (width - 3) / 3;
  return text.substr(0, width - 3 - end) + "..." + text.substr(text.size() - end);
}

}  // namespace

std::uint64_t bytes_of(const access_stats& stats) { return stats.loaded_bytes + stats.stored_bytes; }

std::string row_text(const stats_row& row, std::size_t width) {
  const std::string name = printable(row.name);
  if (row.source.empty()) return cut(name, width);
  const std::string source = cut(printable(row.source.substr(row.source.rfind('/') + 1)), width / 2);
  return cut(name, width - source.size() - 2) + "  " + source;
}

void print_stats_text(const stats_table& table, stats_key by, std::size_t top) {
  print_counts(table.total);
  if (table.total.records == 0) return;
  print_histograms(table.total);
  constexpr std::size_t name_width = 35;
  const std::size_t shown = std::min(top, table.rows.size());
  fmt::print("\n   records      % loads %     lines  stride  {}\n", name_of(by));
  for (std::size_t i = 0; i != shown; ++i) {
    const access_stats& stats = table.rows[i].stats;
    fmt::print("{:>10} {:>6.1f} {:>7.1f} {:>9} {:>7}  {}\n", stats.records, percent(stats.records, table.total.records),
               percent(stats.loads, stats.records), stats.lines.count(), stride_text(stats),
               row_text(table.rows[i], name_width));
  }
  if (shown != table.rows.size()) fmt::print("({} more: see --top)\n", table.rows.size() - shown);
}

}  // namespace quern
