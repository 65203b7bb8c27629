// The page: its text, and the numbers that its script draws.
#include "tools/plot/html_page.h"

#include <fmt/core.h>
#include <plot_page.h>

#include <map>
#include <nlohmann/json.hpp>

#include "tools/plot/axis.h"
#include "tools/plot/plot_titles.h"
#include "tools/plot/svg_plots.h"

namespace quern {
namespace {

using json = nlohmann::ordered_json;

constexpr std::size_t most_runs = 40'000;

std::string hexadecimal(std::uint64_t number) { return fmt::format("{:#x}", number); }

json areas_of(const plot_data& data) {
  json areas = json::array();
  for (const address_area& area : data.layout.areas())
    areas.push_back({{"first", hexadecimal(area.first)},
                     {"row_bytes", std::uint64_t{1} << area.row_bits},
                     {"row", area.first_row},
                     {"rows", area.rows()},
                     {"bottom", area.bottom},
                     {"height", area.height}});
  return areas;
}

json place_of(const plot_place& place, const std::vector<density_grid::run>& runs, std::uint64_t all) {
  const access_stats& stats = place.stats;
  const auto stride = stats.strides.most();
  json cells = json::array();
  for (const density_grid::run& run : runs)
    for (const std::uint64_t number :
         {std::uint64_t{run.column}, std::uint64_t{run.row}, std::uint64_t{run.rows}, run.bytes})
      cells.push_back(number);
  return {{"name", place.name},
          {"source", place.source},
          {"pc", place.pc == 0 ? "" : hexadecimal(place.pc)},
          {"loads", stats.loads},
          {"stores", stats.stores},
          {"share", percent_text(static_cast<double>(stats.records), static_cast<double>(all))},
          {"bytes", stats.loaded_bytes + stats.stored_bytes},
          {"footprint", stats.lines.count() * plot_data::line_bytes},
          {"stride", stride ? json(stride->number) : json(nullptr)},
          {"cells", std::move(cells)}};
}

json footprint_of(const plot_data& data) {
  json so_far = json::array(), within = json::array();
  for (const footprint_windows::window& window : data.footprint.windows()) {
    so_far.push_back(window.so_far * plot_data::line_bytes);
    within.push_back(window.within * plot_data::line_bytes);
  }
  return {{"window", data.footprint.length()}, {"so_far", so_far}, {"within", within}};
}

// As it may stand within a script element: the sign that would end it is spelled otherwise.
std::string numbers_of(const plot_data& data) {
  const auto runs = data.grid.runs();
  json places = json::array();
  for (std::size_t i = 0; i != data.places.size(); ++i)
    places.push_back(
        place_of(data.places[i], i < runs.size() ? runs[i] : std::vector<density_grid::run>{}, data.total.records));
  const json all = {{"time",
                     {{"first", data.first_time},
                      {"end", data.last_time + 1},
                      {"step", std::uint64_t{1} << data.grid.column_bits()}}},
                    {"joined_rows", data.grid.joined_rows()},
                    {"areas", areas_of(data)},
                    {"regions", data.region_starts},
                    {"footprint", footprint_of(data)},
                    {"places", places}};
  std::string text;
  for (const char each : all.dump()) {
    if (each == '<')
      text += "\\u003c";
    else
      text += each;
  }
  return text;
}

std::string summary_of(const plot_data& data) {
  return fmt::format("{} loads and {} stores of SVE instructions, by {} {}. Vectors of {} bits.",
                     short_number(static_cast<double>(data.total.loads)),
                     short_number(static_cast<double>(data.total.stores)), data.places.size(),
                     data.places.size() == 1 ? "place" : "places", 8 * data.vector_bytes);
}

// The template with each {{name}} replaced.
std::string filled(std::string_view page, const std::map<std::string_view, std::string>& values) {
  std::string text;
  for (std::size_t at = 0;;) {
    const std::size_t open = page.find("{{", at), close = page.find("}}", open);
    text += page.substr(at, open - at);
    if (open == std::string_view::npos) return text;
    text += values.at(page.substr(open + 2, close - open - 2));
    at = close + 2;
  }
}

}  // namespace

std::string draw_page(plot_data& data) {
  data.grid.coarsen_to(most_runs);
  const auto addresses = addresses_title(data), footprint = footprint_title(data), places = places_title(data);
  return filled(plot_page::html, {{"program", xml_escaped(data.program)},
                                  {"summary", summary_of(data)},
                                  {"addresses_title", addresses.title},
                                  {"addresses_subtitle", addresses.subtitle},
                                  {"footprint_title", footprint.title},
                                  {"footprint_subtitle", footprint.subtitle},
                                  {"window", window_text(data)},
                                  {"places_title", places.title},
                                  {"places_subtitle", places.subtitle},
                                  {"histograms", draw_strides(data).element() + draw_reuse(data).element()},
                                  {"chart_style", std::string(plot_page::chart_style)},
                                  {"page_style", std::string(plot_page::style)},
                                  {"page_script", std::string(plot_page::script)},
                                  {"data", numbers_of(data)}});
}

}  // namespace quern
