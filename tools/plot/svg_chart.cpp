// Writing SVG.
#include "tools/plot/svg_chart.h"

#include <fmt/core.h>
#include <plot_page.h>

namespace quern {

std::string xml_escaped(std::string_view text) {
  std::string escaped;
  for (const char each : text) {
    switch (each) {
      case '&': escaped += "&amp;"; break;
      case '<': escaped += "&lt;"; break;
      case '>': escaped += "&gt;"; break;
      case '"': escaped += "&quot;"; break;
      default: escaped += each;
    }
  }
  return escaped;
}

namespace {

constexpr double title_y = 26;

}  // namespace

svg_chart::svg_chart(double width, double height, std::string_view title, std::string_view subtitle)
    : width_(width), height_(height), title_(title) {
  rectangle("surface", 0, 0, width, height);
  text("title", 16, title_y, "start", title);
  text("", 16, 46, "start", subtitle);
}

void svg_chart::rectangle(std::string_view classes, double x, double y, double width, double height,
                          std::string_view tip) {
  body_ += fmt::format(R"(<rect class="{}" x="{:.4g}" y="{:.4g}" width="{:.4g}" height="{:.4g}")", classes, x, y, width,
                       height);
  body_ += tip.empty() ? "/>\n" : fmt::format("><title>{}</title></rect>\n", xml_escaped(tip));
}

void svg_chart::line(std::string_view classes, double x1, double y1, double x2, double y2) {
  body_ += fmt::format(R"(<line class="{}" x1="{:.4g}" y1="{:.4g}" x2="{:.4g}" y2="{:.4g}"/>)"
                       "\n",
                       classes, x1, y1, x2, y2);
}

void svg_chart::text(std::string_view classes, double x, double y, std::string_view anchor, std::string_view text) {
  body_ += fmt::format(R"(<text class="{}" x="{:.4g}" y="{:.4g}" text-anchor="{}">{}</text>)"
                       "\n",
                       classes, x, y, anchor, xml_escaped(text));
}

void svg_chart::path(std::string_view classes, const std::string& commands) {
  body_ += fmt::format("<path class=\"{}\" d=\"{}\"/>\n", classes, commands);
}

double svg_chart::key(std::string_view classes, double x, std::string_view meaning) {
  rectangle(classes, x, title_y - 9, 10, 10);
  text("", x + 15, title_y, "start", meaning);
  return x + 15 + 7 * static_cast<double>(meaning.size()) + 12;
}

std::string svg_chart::element(const std::string& size, std::string_view style) const {
  return fmt::format(R"(<svg xmlns="http://www.w3.org/2000/svg" class="chart"{} viewBox="0 0 {} {}" role="img" )"
                     "aria-label=\"{}\">\n{}{}</svg>\n",
                     size, width_, height_, xml_escaped(title_), style, body_);
}

std::string svg_chart::element() const { return element("", ""); }

std::string svg_chart::file() const {
  return element(fmt::format(R"( width="{}" height="{}")", width_, height_),
                 fmt::format("<style>\n{}</style>\n", plot_page::chart_style));
}

}  // namespace quern
