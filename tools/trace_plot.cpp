// quern trace plot: pictures of a trace's accesses, and a page of them.
#include <fmt/core.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "tools/plot/html_page.h"
#include "tools/plot/svg_plots.h"
#include "tools/trace_commands.h"
#include "tools/user_error.h"

namespace quern {
namespace {

void write_file(const std::filesystem::path& path, const std::string& text) {
  errno = 0;
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw user_error{fmt::format("can't write {}: {}", path.string(), std::strerror(errno))};
}

}  // namespace

void plot_trace(trace_reader& reader, const trace_filter& filter, const std::string& folder) {
  plot_data data = collect_plot_data(reader, filter);
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw user_error{fmt::format("can't make the folder {}: {}", folder, error.message())};
  const std::filesystem::path to(folder);
  write_file(to / "index.html", draw_page(data));  // before the picture that needs fewer cells
  write_file(to / "addresses.svg", draw_addresses(data).file());
  write_file(to / "footprint.svg", draw_footprint(data).file());
  write_file(to / "strides.svg", draw_strides(data).file());
  write_file(to / "reuse.svg", draw_reuse(data).file());
  write_file(to / "places.svg", draw_places(data).file());
  fmt::print("{}\n", (to / "index.html").string());
}

}  // namespace quern
