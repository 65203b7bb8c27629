// The help of the commands at 80 columns.
#include "tools/help_format.h"

#include <sstream>
#include <string_view>
#include <utility>

namespace quern {
namespace {

constexpr std::size_t width = 80;

// The line as several, of which all but the first are set in. A word that is too long stays whole.
std::string wrapped(std::string_view line, std::size_t indent) {
  std::string text;
  for (std::size_t room = width; line.size() > room; room = width - indent) {
    const std::size_t end = line.rfind(' ', room);
    if (end == std::string_view::npos) break;
    (text += line.substr(0, end)).append("\n").append(indent, ' ');
    line.remove_prefix(end + 1);
  }
  return (text += line) += '\n';
}

}  // namespace

std::string help_format::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
  std::istringstream lines(Formatter::make_help(app, std::move(name), mode));
  std::string text;
  for (std::string line; std::getline(lines, line);)
    text += wrapped(line, line.starts_with(' ') ? get_column_width() : 0);
  return text;
}

}  // namespace quern
