// Wording of titles.
#include "tools/plot/plot_titles.h"

#include <fmt/core.h>

#include <algorithm>

#include "tools/plot/axis.h"

namespace quern {
namespace {

std::string bytes_of_lines(std::uint64_t lines) {
  return short_bytes(static_cast<double>(lines) * static_cast<double>(plot_data::line_bytes));
}

std::string number_of(std::uint64_t count, std::string_view what, std::string_view plural) {
  return fmt::format("{} {}", short_number(static_cast<double>(count)), count == 1 ? what : plural);
}

std::string share_of(std::uint64_t part, std::uint64_t whole) {
  return percent_text(static_cast<double>(part), static_cast<double>(whole));
}

}  // namespace

plot_title addresses_title(const plot_data& data) {
  return {"Addresses over time",
          fmt::format("{}, {} of them loads, in {} of memory", number_of(data.total.records, "access", "accesses"),
                      share_of(data.total.loads, data.total.records),
                      number_of(data.layout.areas().size(), "area", "areas"))};
}

plot_title footprint_title(const plot_data& data) {
  std::uint64_t most = 0;
  for (const footprint_windows::window& window : data.footprint.windows()) most = std::max(most, window.within);
  return {"Footprint over time",
          fmt::format("{} touched in all, at most {} within {}", bytes_of_lines(data.total.lines.count()),
                      bytes_of_lines(most), window_text(data))};
}

std::string window_text(const plot_data& data) { return number_of(data.footprint.length(), "record", "records"); }

plot_title strides_title(const plot_data& data) {
  const auto most = data.total.strides.most();
  return {"Strides", most ? fmt::format("Most often {}: at least {} of the accesses",
                                        short_signed_bytes(static_cast<double>(most->number)),
                                        share_of(most->count, data.total.records))
                          : "Many: none is that of an eighth of the accesses"};
}

plot_title reuse_title(const plot_data& data) {
  constexpr unsigned bins = 10;  // of less than 512 lines
  constexpr std::uint64_t lines = std::uint64_t{1} << (bins - 1);
  std::uint64_t near = 0, all = 0;
  for (unsigned bin = 0; bin != reuse_distance::bins; ++bin) {
    all += data.total.reuse.counts[bin];
    if (bin < bins) near += data.total.reuse.counts[bin];
  }
  return {"Reuse distance", fmt::format("{} of the lines touched are among the last {} ({})", share_of(near, all),
                                        lines, bytes_of_lines(lines))};
}

plot_title places_title(const plot_data& data) {
  const std::size_t few = std::min<std::size_t>(data.places.size(), 3);
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i != few; ++i) sum += data.places[i].stats.records;
  const bool are_all = few == data.places.size();
  return {"Hottest places",
          are_all ? fmt::format("All accesses are by {}", number_of(few, "instruction", "instructions"))
                  : fmt::format("{} instructions make {} of the accesses", few, share_of(sum, data.total.records))};
}

}  // namespace quern
