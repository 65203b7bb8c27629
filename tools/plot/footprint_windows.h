// How many lines of memory a trace has touched as it goes: so far, and in each of a number of equal windows of time.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/distinct_count.h"

namespace quern {

class footprint_windows {
 public:
  static constexpr std::uint64_t most_windows = 256;

  // Time goes from `first` to `last`.
  footprint_windows(std::uint64_t first, std::uint64_t last)
      : first_(first), length_((last - first) / most_windows + 1) {}

  // Time does not go backwards.
  void add(std::uint64_t time, std::uint64_t line) {
    while (time - first_ >= length_ * (closed_.size() + 1)) close();
    so_far_.add(line);
    window_.add(line);
  }
  // Closes the window that time is in, too. To be called once, at the end.
  void finish() { close(); }

  struct window {
    std::uint64_t so_far, within;
  };
  const std::vector<window>& windows() const { return closed_; }
  std::uint64_t length() const { return length_; }

 private:
  void close() {
    const std::uint64_t before = closed_.empty() ? 0 : closed_.back().so_far;
    closed_.push_back(
        {std::max(before, so_far_.count()), window_.count()});  // an estimate may fall, what it is of can't
    window_ = {};
  }

  std::uint64_t first_, length_;
  distinct_count so_far_, window_;
  std::vector<window> closed_;
};

}  // namespace quern
