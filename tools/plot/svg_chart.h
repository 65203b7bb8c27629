// A chart as SVG: its frame, and the elements that it is made of.
#pragma once

#include <string>
#include <string_view>

namespace quern {

// The text with the signs that XML gives a meaning spelled as entities.
std::string xml_escaped(std::string_view text);

// Classes are those of chart.css. Coordinates are in pixels from the upper left corner.
class svg_chart {
 public:
  svg_chart(double width, double height, std::string_view title, std::string_view subtitle);

  // What is in `tip` is told when the pointer is on the rectangle.
  void rectangle(std::string_view classes, double x, double y, double width, double height, std::string_view tip = {});
  void line(std::string_view classes, double x1, double y1, double x2, double y2);
  // `anchor` is start, middle or end: which of the text is at x.
  void text(std::string_view classes, double x, double y, std::string_view anchor, std::string_view text);
  void path(std::string_view classes, const std::string& commands);
  // A square of a colour and what it means, beside the title; answers where the next may begin.
  double key(std::string_view classes, double x, std::string_view meaning);

  std::string element() const;  // for a page that has chart.css
  std::string file() const;

 private:
  std::string element(const std::string& size, std::string_view style) const;

  double width_, height_;
  std::string title_, body_;
};

}  // namespace quern
