// Merging ranges as they come.
#include "tools/plot/touched_ranges.h"

#include <algorithm>
#include <utility>

namespace quern {

void touched_ranges::add(std::uint64_t first, std::uint64_t last) {
  add_granules(first >> granule_bits_, last >> granule_bits_);
  while (ranges_.size() > most_ranges_) coarsen();
}

void touched_ranges::add_granules(std::uint64_t first, std::uint64_t last) {
  auto next = ranges_.upper_bound(first);
  if (next != ranges_.begin()) {
    const auto before = std::prev(next);
    if (before->second >= last) return;
    if (before->second + 1 >= first) {
      first = before->first;
      next = before;
    }
  }
  while (next != ranges_.end() && next->first <= last + 1) {
    last = std::max(last, next->second);
    next = ranges_.erase(next);
  }
  ranges_.emplace_hint(next, first, last);
}

void touched_ranges::coarsen() {
  ++granule_bits_;
  for (const auto& [first, last] : std::exchange(ranges_, {})) add_granules(first >> 1, last >> 1);
}

std::vector<touched_range> touched_ranges::ranges() const {
  std::vector<touched_range> found;
  found.reserve(ranges_.size());
  const std::uint64_t within = (std::uint64_t{1} << granule_bits_) - 1;
  for (const auto& [first, last] : ranges_) found.push_back({first << granule_bits_, last << granule_bits_ | within});
  return found;
}

}  // namespace quern
