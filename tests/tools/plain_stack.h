// A second model of the reuse distance, as plain as can be: a list of lines, the one that was accessed last in front.
#pragma once

#include <algorithm>
#include <list>

#include "tools/power_histogram.h"
#include "tools/reuse_distance.h"

namespace quern::test {

class plain_stack {
 public:
  unsigned access(std::uint64_t line) {
    const auto found = std::find(lines_.begin(), lines_.end(), line);
    const auto distance = static_cast<std::uint64_t>(std::distance(lines_.begin(), found));
    const bool is_new = found == lines_.end();
    if (!is_new) lines_.erase(found);
    lines_.push_front(line);
    return is_new ? reuse_distance::far : power_histogram<65>::bin_of(distance);
  }

 private:
  std::list<std::uint64_t> lines_;
};

}  // namespace quern::test
