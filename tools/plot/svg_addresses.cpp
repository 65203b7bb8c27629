// Addresses and footprint over time.
#include <fmt/core.h>

#include <cmath>

#include "tools/plot/axis.h"
#include "tools/plot/plot_titles.h"
#include "tools/plot/svg_plots.h"

namespace quern {
namespace {

constexpr double width = 800, left = 76, right = 784, top = 62;
constexpr std::size_t most_runs = 2200;

// The axis of both: records in their order.
class time_axis {
 public:
  explicit time_axis(const plot_data& data)
      : first_(static_cast<double>(data.first_time)), end_(static_cast<double>(data.last_time) + 1) {}
  double x(double time) const { return left + (right - left) * (std::max(time, first_) - first_) / (end_ - first_); }
  void draw(svg_chart& chart, double bottom) const {
    for (const double tick : decimal_ticks(first_, end_, 8)) {
      chart.line("grid", x(tick), top, x(tick), bottom + 4);
      chart.text("", x(tick), bottom + 18, "middle", short_number(tick));
    }
    chart.text("", (left + right) / 2, bottom + 36, "middle", "record, in the order of execution");
  }
  void draw_regions(svg_chart& chart, const plot_data& data, double bottom) const {
    double free_from = 0;
    for (const std::uint64_t start : data.region_starts) {
      const double at = x(static_cast<double>(start));
      if (at < free_from) continue;  // the lines of others would be too near to be told apart
      chart.line("region", at, top, at, bottom);
      free_from = at + 4;
    }
  }

 private:
  double first_, end_;
};

// Where an area is drawn.
struct area_frame {
  const address_area& area;
  double low, high;  // y of its lower and its upper end

  area_frame(const address_area& which, double bottom)
      : area(which), low(bottom - (bottom - top) * which.bottom), high(low - (bottom - top) * which.height) {}
  double y(double row) const { return low - (low - high) * row / area.rows(); }
};

void draw_tick(svg_chart& chart, double y, const std::string& text) {
  chart.line("grid", left - 4, y, right, y);
  chart.text("", left - 7, y + 4, "end", text);
}

void draw_frame(svg_chart& chart, const area_frame& frame) {
  const address_area& area = frame.area;
  const double bytes = static_cast<double>(area.last - area.first) + 1;
  chart.rectangle("band", left, frame.high, right - left, frame.low - frame.high);
  for (const double tick : binary_ticks(bytes, static_cast<unsigned>((frame.low - frame.high) / 28) + 1)) {
    const double y = frame.low - (frame.low - frame.high) * tick / bytes;
    draw_tick(chart, y, tick == 0 ? "+0" : "+" + short_bytes(tick));
  }
  chart.text("code", left + 2, frame.high - 5, "start",
             fmt::format("{:#x} to {:#x}, {}", area.first, area.last, short_bytes(bytes)));
}

const char* kind_class(const access_stats& stats) {
  return stats.stores == 0 ? "load" : stats.loads == 0 ? "store" : "mixed";
}

// The bytes of a cell on a scale of 0 to 2, the fullest being 2.
std::size_t level_of(double bytes, double most) {
  return most <= 1 ? 2 : static_cast<std::size_t>(std::min(2.0, 3 * std::log2(bytes + 1) / std::log2(most + 1)));
}

// A rectangle that is at least to be seen.
std::string box(double x, double end, double y, double low) {
  return fmt::format("M{:.1f} {:.1f}h{:.1f}v{:.1f}H{:.1f}z", x, y, std::max(end - x, 1.5), std::max(low - y, 1.5), x);
}

void draw_runs(svg_chart& chart, const plot_data& data, const time_axis& time, double bottom) {
  const auto runs = data.grid.runs();
  std::uint64_t most = 1;
  for (const auto& of_place : runs)
    for (const density_grid::run& run : of_place) most = std::max(most, run.bytes);
  const double column = std::exp2(data.grid.column_bits());
  for (std::size_t place = 0; place != runs.size(); ++place) {
    std::string levels[3];
    for (const density_grid::run& run : runs[place]) {
      const address_area& area = data.layout.area_of_row(run.row);
      const area_frame frame(area, bottom);
      const double row = run.row - area.first_row, end = std::min<double>(row + run.rows, area.rows());
      const double at = static_cast<double>(data.grid.first_time()) + column * run.column;
      levels[level_of(static_cast<double>(run.bytes), static_cast<double>(most))] +=
          box(time.x(at), time.x(at + column), frame.y(end), frame.y(row));
    }
    constexpr const char* names[] = {" faint", " middle", ""};
    for (std::size_t level = 0; level != 3; ++level)
      if (!levels[level].empty())
        chart.path(kind_class(data.places[place].stats) + std::string(names[level]), levels[level]);
  }
}

void draw_keys(svg_chart& chart, const access_stats& total) {
  double x = right - 150;
  if (total.loads != 0) x = chart.key("load", x, "loads");
  if (total.stores != 0) chart.key("store", x, "stores");
}

// A line through steps, one a window.
template <class Value>
std::string steps(const plot_data& data, const time_axis& time, Value y_of) {
  std::string commands;
  const auto& windows = data.footprint.windows();
  for (std::size_t i = 0; i != windows.size(); ++i) {
    const auto from = static_cast<double>(data.first_time + i * data.footprint.length());
    const double end =
        std::min(from + static_cast<double>(data.footprint.length()), static_cast<double>(data.last_time) + 1);
    commands += fmt::format("{}{:.1f} {:.1f}H{:.1f}", i == 0 ? "M" : "L", time.x(from), y_of(windows[i]), time.x(end));
  }
  return commands;
}

}  // namespace

svg_chart draw_addresses(plot_data& data) {
  constexpr double height = 480, bottom = height - 46;
  const auto [title, subtitle] = addresses_title(data);
  svg_chart chart(width, height, title, subtitle);
  const time_axis time(data);
  for (const address_area& area : data.layout.areas()) draw_frame(chart, {area, bottom});
  time.draw(chart, bottom);
  time.draw_regions(chart, data, bottom);
  data.grid.coarsen_to(most_runs);
  draw_runs(chart, data, time, bottom);
  draw_keys(chart, data.total);
  return chart;
}

svg_chart draw_footprint(const plot_data& data) {
  constexpr double height = 260, bottom = height - 46;
  const auto [title, subtitle] = footprint_title(data);
  svg_chart chart(width, height, title, subtitle);
  const time_axis time(data);
  const double most = static_cast<double>(data.footprint.windows().back().so_far * plot_data::line_bytes) * 1.05;
  const auto y = [&](double bytes) { return bottom - (bottom - top) * bytes / most; };
  for (const double tick : binary_ticks(most, 5)) draw_tick(chart, y(tick), short_bytes(tick));
  time.draw(chart, bottom);
  const auto bytes = [](std::uint64_t lines) { return static_cast<double>(lines * plot_data::line_bytes); };
  chart.path("so-far", steps(data, time, [&](const auto& window) { return y(bytes(window.so_far)); }));
  chart.path("within", steps(data, time, [&](const auto& window) { return y(bytes(window.within)); }));
  chart.key("mixed", chart.key("so-far-key", right - 320, "touched so far"), "touched within " + window_text(data));
  return chart;
}

}  // namespace quern
