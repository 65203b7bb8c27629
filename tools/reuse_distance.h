// How many other lines of memory were accessed between two accesses of a line: the depth at which a stack of lines, the
// least recently used at the bottom, has it. A cache of more lines that replaces the least recently used would have had
// it still.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

namespace quern {

// The distance of each access, to the power of two: exact up to 2^20 lines. The stack is cut below, which bounds its
// memory to 28 MB; a line that is not in it was accessed that many lines ago or never. The last line of each power of
// two is known, so that an access moves one line from each to the next instead of counting (Kim, Hill and Wood).
class reuse_distance {
 public:
  static constexpr unsigned most_bits = 20;
  static constexpr unsigned bins = most_bits + 2;  // 0, 1, 2 to 3, 4 to 7, ..., and the last for all else
  static constexpr unsigned far = bins - 1;

  // The bin of the distance to the line's last access.
  unsigned access(std::uint64_t line);

 private:
  using index = std::uint32_t;
  static constexpr index none = ~index{0};
  static constexpr index most_lines = index{1} << most_bits;
  struct node {
    std::uint64_t line;
    index above, below;  // in the stack
    index same_hash;
    std::uint32_t bin;
  };

  static index hash_of(std::uint64_t line) {
    constexpr std::uint64_t golden_ratio = 0x9E3779B97F4A7C15;
    return static_cast<index>((line * golden_ratio) >> (64 - most_bits));
  }
  index find(std::uint64_t line) const;
  index take_room();
  void unlink(index at);
  void push(index at);
  void pass_on(unsigned bin);

  std::vector<node> nodes_;
  std::vector<index> by_hash_ = std::vector<index>(most_lines, none);
  index top_ = none, bottom_ = none;
  index last_[most_bits + 1] = {};  // of each bin that is full
};

}  // namespace quern
