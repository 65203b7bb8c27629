// Steps of axes, and short numbers.
#include "tools/plot/axis.h"

#include <fmt/core.h>

#include <array>
#include <cmath>

namespace quern {
namespace {

std::vector<double> ticks(double first, double end, double step) {
  std::vector<double> found;
  const double number = std::ceil(first / step);
  for (int i = 0; (number + i) * step <= end; ++i) found.push_back((number + i) * step);
  return found;
}

// The number in the largest unit in which it is 1 or more, with three digits unless it has more before the point.
template <std::size_t N>
std::string in_units(double number, double factor, const std::array<const char*, N>& units) {
  std::size_t unit = 0;
  for (; unit + 1 != N && number >= factor; ++unit) number /= factor;
  const std::string digits = number >= 100 ? fmt::format("{:.0f}", number) : fmt::format("{:.3g}", number);
  return *units[unit] == 0 ? digits : digits + " " + units[unit];
}

}  // namespace

std::vector<double> decimal_ticks(double first, double end, unsigned most) {
  const double least = std::max(1.0, (end - first) / most);
  double step = std::pow(10, std::floor(std::log10(least)));
  for (const double factor : {2.0, 2.5, 2.0})
    if (step < least) step *= factor;
  return ticks(first, end, step);
}

std::vector<double> binary_ticks(double end, unsigned most) {
  return ticks(0, end, std::exp2(std::ceil(std::log2(std::max(1.0, end / most)))));
}

std::string short_number(double number) { return in_units(number, 1000, std::array{"", "k", "M", "G", "T", "P", "E"}); }

std::string short_bytes(double bytes) {
  return in_units(bytes, 1024, std::array{"B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"});
}

std::string short_signed_bytes(double bytes) {
  const std::string sign = bytes < 0 ? "−" : bytes > 0 ? "+" : "";
  return sign + short_bytes(std::abs(bytes));
}

std::string short_binary(double number) {
  return in_units(number, 1024, std::array{"", "Ki", "Mi", "Gi", "Ti", "Pi", "Ei"});
}

std::string percent_text(double part, double whole) {
  const double percent = whole == 0 ? 0 : 100 * part / whole;
  if (percent > 0 && percent < 0.1) return "<0.1 %";
  if (percent > 99.9 && percent < 100) return ">99.9 %";
  const bool is_whole = percent == 0 || percent == 100 || (percent >= 10 && percent < 99);
  return is_whole ? fmt::format("{:.0f} %", percent) : fmt::format("{:.1f} %", percent);
}

}  // namespace quern
