// A hierarchy of set-associative caches, each of which throws out the line that was used least recently.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace quern {

struct cache_shape {
  std::uint64_t bytes, ways, line_bytes;
  std::uint64_t sets() const { return bytes / (ways * line_bytes); }
};

class cache_level {
 public:
  explicit cache_level(const cache_shape& shape) : shape_(shape), lines_(shape.sets() * shape.ways, no_line) {}

  // Whether the line that holds the address is here; it is so afterwards.
  bool access(std::uint64_t address) {
    const std::uint64_t line = address / shape_.line_bytes;
    const auto set = lines_.begin() + static_cast<std::ptrdiff_t>(line % shape_.sets() * shape_.ways);
    const auto end = set + static_cast<std::ptrdiff_t>(shape_.ways);
    const auto found = std::find(set, end, line);
    const bool is_hit = found != end;
    std::rotate(set, is_hit ? found : end - 1, is_hit ? found + 1 : end);  // to the front; the last is thrown out
    *set = line;
    return is_hit;
  }
  const cache_shape& shape() const { return shape_; }

 private:
  static constexpr std::uint64_t no_line = ~std::uint64_t{0};
  cache_shape shape_;
  std::vector<std::uint64_t> lines_;  // set by set, the one that was used last in front
};

class cache_hierarchy {
 public:
  explicit cache_hierarchy(const std::vector<cache_shape>& shapes) : levels_(shapes.begin(), shapes.end()) {}

  // The level, from 0, in which the address's line is found; the number of levels when in none. All levels above have
  // it afterwards.
  std::size_t access(std::uint64_t address) {
    std::size_t level = 0;
    while (level != levels_.size() && !levels_[level].access(address)) ++level;
    return level;
  }
  std::size_t levels() const { return levels_.size(); }
  std::uint64_t line_bytes() const { return levels_.front().shape().line_bytes; }

 private:
  std::vector<cache_level> levels_;
};

}  // namespace quern
