// Which addresses a trace touches, as ranges of whole granules. Memory is bounded: where ranges get too many, granules
// grow.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace quern {

struct touched_range {
  std::uint64_t first = 0, last = 0;
  bool operator==(const touched_range&) const = default;
};

class touched_ranges {
 public:
  explicit touched_ranges(std::size_t most_ranges = 4096) : most_ranges_(most_ranges) {}

  void add(std::uint64_t first, std::uint64_t last);

  // By rising address; ranges that meet are one.
  std::vector<touched_range> ranges() const;

 private:
  using granules = std::map<std::uint64_t, std::uint64_t>;  // the last by the first

  void add_granules(std::uint64_t first, std::uint64_t last);
  void coarsen();

  std::size_t most_ranges_;
  unsigned granule_bits_ = 6;
  granules ranges_;
};

}  // namespace quern
