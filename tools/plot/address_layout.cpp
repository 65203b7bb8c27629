// Choosing areas and their rows.
#include "tools/plot/address_layout.h"

#include <algorithm>
#include <cmath>

namespace quern {
namespace {

constexpr std::uint32_t wanted_rows = 1024, least_rows = 64;  // of all areas; of one
constexpr double head_room = 0.05;                            // above each area, where its name goes
constexpr double even_share = 0.4;                            // is shared alike, the rest by size
constexpr std::uint64_t least_gap = 4096;

// The ranges with all gaps closed but the widest.
std::vector<touched_range> cut(const std::vector<touched_range>& ranges) {
  std::uint64_t touched = 0;
  std::vector<std::uint64_t> gaps;
  for (std::size_t i = 0; i != ranges.size(); ++i) {
    touched += ranges[i].last - ranges[i].first;
    if (i != 0) gaps.push_back(ranges[i].first - ranges[i - 1].last);
  }
  std::sort(gaps.begin(), gaps.end(), std::greater<>());
  std::uint64_t narrowest = std::max(least_gap, touched / 8);
  if (gaps.size() >= address_layout::most_areas)
    narrowest = std::max(narrowest, gaps[address_layout::most_areas - 1] + 1);
  std::vector<touched_range> areas;
  for (const touched_range& range : ranges) {
    if (areas.empty() || range.first - areas.back().last >= narrowest) areas.push_back(range);
    areas.back().last = range.last;
  }
  return areas;
}

// The smallest rows of which there are not too many.
unsigned row_bits_of(const touched_range& range, double share) {
  const auto most = std::max(least_rows, static_cast<std::uint32_t>(share * wanted_rows));
  unsigned bits = 0;
  while ((range.last >> bits) - (range.first >> bits) >= most) ++bits;
  return bits;
}

}  // namespace

address_layout::address_layout(const std::vector<touched_range>& ranges) {
  const std::vector<touched_range> found = cut(ranges);
  const auto weight = [](const touched_range& range) {
    return std::sqrt(static_cast<double>(range.last - range.first) + 1);
  };
  double weights = 0;
  for (const touched_range& range : found) weights += weight(range);
  const double least_share = even_share / static_cast<double>(std::max<std::size_t>(found.size(), 1));
  const double room = 1 - head_room * static_cast<double>(found.size());
  double bottom = 0;
  for (const touched_range& range : found) {
    const double share = least_share + (1 - even_share) * weight(range) / weights;
    const unsigned bits = row_bits_of(range, share);
    const std::uint64_t within = (std::uint64_t{1} << bits) - 1;
    areas_.push_back({range.first & ~within, range.last | within, bits, rows_, bottom, share * room});
    rows_ += (areas_.back().rows() + row_unit - 1) / row_unit * row_unit + row_unit;
    bottom += share * room + head_room;
  }
}

const address_area* address_layout::find(std::uint64_t address) const {
  const auto after = std::upper_bound(areas_.begin(), areas_.end(), address,
                                      [](std::uint64_t value, const address_area& area) { return value < area.first; });
  if (after == areas_.begin()) return nullptr;
  const address_area& area = *std::prev(after);
  return address <= area.last ? &area : nullptr;
}

const address_area& address_layout::area_of_row(std::uint32_t row) const {
  return *std::prev(
      std::upper_bound(areas_.begin(), areas_.end(), row,
                       [](std::uint32_t value, const address_area& area) { return value < area.first_row; }));
}

}  // namespace quern
