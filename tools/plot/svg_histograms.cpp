// Strides, reuse distances, and places by their accesses.
#include <fmt/core.h>

#include <cmath>

#include "tools/plot/axis.h"
#include "tools/plot/plot_titles.h"
#include "tools/plot/svg_plots.h"

namespace quern {
namespace {

struct histogram_part {
  std::string_view kind;  // its class
  std::uint64_t count = 0;
};

struct histogram_bar {
  std::string tick, tip;              // the tick may be empty
  std::vector<histogram_part> parts;  // from below

  std::uint64_t count() const {
    std::uint64_t sum = 0;
    for (const histogram_part& part : parts) sum += part.count;
    return sum;
  }
};

struct histogram {
  plot_title title;
  std::string axis;
  std::vector<histogram_bar> bars;
  std::uint64_t all = 0;  // what 100 % are
};

constexpr double width = 480, height = 300, left = 56, right = width - 16, top = 66, bottom = height - 48;

void draw_bar(svg_chart& chart, const histogram_bar& bar, double x, double bar_width, double height_of_one) {
  double low = bottom;
  for (const histogram_part& part : bar.parts) {
    if (part.count == 0) continue;
    const double part_height = std::max(height_of_one * static_cast<double>(part.count), 1.0);
    low -= part_height;
    chart.rectangle(part.kind, x, low, bar_width, part_height, bar.tip);
  }
}

svg_chart draw_histogram(const histogram& shown) {
  svg_chart chart(width, height, shown.title.title, shown.title.subtitle);
  std::uint64_t most = 1;
  for (const histogram_bar& bar : shown.bars) most = std::max(most, bar.count());
  const double all = static_cast<double>(std::max<std::uint64_t>(shown.all, 1));
  const double end = 105 * static_cast<double>(most) / all;  // percent
  const auto y = [&](double percent) { return bottom - (bottom - top) * percent / end; };
  for (const double tick : decimal_ticks(0, end, 5)) {
    chart.line("grid", left, y(tick), right, y(tick));
    chart.text("", left - 6, y(tick) + 4, "end", fmt::format("{:.0f} %", tick));
  }
  const double slot = (right - left) / static_cast<double>(shown.bars.size());
  for (std::size_t i = 0; i != shown.bars.size(); ++i) {
    const double x = left + slot * static_cast<double>(i);
    draw_bar(chart, shown.bars[i], x + slot * 0.1, slot * 0.8, (bottom - top) / end * 100 / all);
    if (!shown.bars[i].tick.empty()) chart.text("", x + slot / 2, bottom + 16, "middle", shown.bars[i].tick);
  }
  chart.text("", (left + right) / 2, bottom + 36, "middle", shown.axis);
  return chart;
}

// The stride of a bin that is nearest to 0: "−8 B".
std::string nearest_stride(int bin) { return short_signed_bytes(std::copysign(std::exp2(std::abs(bin) - 1), bin)); }

std::string stride_range(int bin) {
  if (bin == 0) return "the same address";
  if (std::abs(bin) == stride_counts::outermost) return nearest_stride(bin) + " and more";
  return nearest_stride(bin) + (std::abs(bin) == 1 ? "" : fmt::format(" to {:.0f} B", std::exp2(std::abs(bin)) - 1));
}

histogram_bar stride_bar(const stride_counts& strides, int bin, bool has_tick) {
  const auto& [loads, stores] = strides.bin(bin);
  return {.tick = !has_tick  ? ""
                  : bin == 0 ? "0"
                             : nearest_stride(bin),
          .tip = fmt::format("{}: {} loads, {} stores", stride_range(bin), loads, stores),
          .parts = {{"load", loads}, {"store", stores}}};
}

using reuse_histogram = decltype(access_stats::reuse);

// "4 to 7 other lines: 120 times".
histogram_bar reuse_bar(const reuse_histogram& reuse, unsigned bin, bool has_tick) {
  const bool is_far = bin == reuse_distance::far;
  const std::uint64_t lowest = reuse_histogram::lowest(bin), highest = reuse_histogram::highest(bin);
  const std::string range = is_far              ? fmt::format("{} and more other lines, or the first time", lowest)
                            : lowest == highest ? fmt::format("{} other lines", lowest)
                                                : fmt::format("{} to {} other lines", lowest, highest);
  return {.tick = is_far     ? "first"
                  : has_tick ? short_binary(static_cast<double>(lowest))
                             : "",
          .tip = fmt::format("{}: {} times", range, reuse.counts[bin]),
          .parts = {{"mixed", reuse.counts[bin]}}};
}

}  // namespace

svg_chart draw_strides(const plot_data& data) {
  int lowest = -4, highest = 4;
  histogram shown{strides_title(data), "bytes from an instruction's last access to its next, by powers of two", {}, 0};
  for (int bin = -stride_counts::outermost; bin <= stride_counts::outermost; ++bin) {
    const std::uint64_t accesses = data.strides.bin(bin).sum();
    shown.all += accesses;
    if (accesses == 0) continue;
    lowest = std::min(lowest, bin);
    highest = std::max(highest, bin);
  }
  const int step = (highest - lowest) / 8 + 1;  // from one tick to the next
  for (int bin = lowest; bin <= highest; ++bin) shown.bars.push_back(stride_bar(data.strides, bin, bin % step == 0));
  svg_chart chart = draw_histogram(shown);
  chart.key("store", chart.key("load", right - 120, "loads"), "stores");
  return chart;
}

svg_chart draw_reuse(const plot_data& data) {
  const reuse_histogram& reuse = data.total.reuse;
  histogram shown{reuse_title(data), "other lines of 64 bytes touched in between, by powers of two", {}, 0};
  unsigned highest = 8;
  for (unsigned bin = 0; bin != reuse_histogram::bins; ++bin) {
    shown.all += reuse.counts[bin];
    if (reuse.counts[bin] != 0 && bin != reuse_distance::far) highest = std::max(highest, bin);
  }
  const unsigned step = highest / 7 + 1;  // from one tick to the next
  for (unsigned bin = 0; bin <= highest; ++bin)
    shown.bars.push_back(reuse_bar(reuse, bin, bin % step == 0 && bin + 1 < highest));
  shown.bars.push_back(reuse_bar(reuse, reuse_distance::far, true));
  return draw_histogram(shown);
}

namespace {

// The end of a place's name and source line, if they are too long: it tells most.
std::string label_of(const plot_place& place) {
  std::string text = place.source.empty() ? place.name : place.name + "  " + place.source;
  constexpr std::size_t most_bytes = 42;
  if (text.size() <= most_bytes) return text;
  std::size_t from = text.size() - most_bytes + 1;
  while (from != text.size() && (text[from] & 0xC0) == 0x80) ++from;  // within a character
  return "…" + text.substr(from);
}

void draw_place(svg_chart& chart, const plot_place& place, double x, double y, double width_of_one, double all) {
  chart.text("code", x - 10, y + 4, "end", label_of(place));
  const double loads = width_of_one * static_cast<double>(place.stats.loads);
  const double stores = width_of_one * static_cast<double>(place.stats.stores);
  if (loads != 0) chart.rectangle("load", x, y - 7, std::max(loads, 1.0), 14);
  if (stores != 0) chart.rectangle("store", x + loads, y - 7, std::max(stores, 1.0), 14);
  const auto accesses = static_cast<double>(place.stats.records);
  chart.text("", x + loads + stores + 8, y + 4, "start",
             fmt::format("{} ({})", short_number(accesses), percent_text(accesses, all)));
}

}  // namespace

svg_chart draw_places(const plot_data& data) {
  constexpr double row = 24, first = 74, sign_width = 6.8, bar_right = 660;
  const std::size_t rows = std::min<std::size_t>(data.places.size(), 12);
  const auto [title, subtitle] = places_title(data);
  svg_chart chart(800, first + row * static_cast<double>(rows), title, subtitle);
  std::size_t longest = 0;
  for (std::size_t i = 0; i != rows; ++i) longest = std::max(longest, label_of(data.places[i]).size());
  const double left_end = 26 + sign_width * static_cast<double>(longest);
  const double width_of_one = (bar_right - left_end) / static_cast<double>(data.places.front().stats.records);
  for (std::size_t i = 0; i != rows; ++i)
    draw_place(chart, data.places[i], left_end, first + row * static_cast<double>(i), width_of_one,
               static_cast<double>(data.total.records));
  chart.key("store", chart.key("load", 664, "loads"), "stores");
  return chart;
}

}  // namespace quern
