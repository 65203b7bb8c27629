// A second model of a cache, as plain as can be: a list of lines a set, the one that was used last at its end.
#pragma once

#include <list>
#include <map>

#include "tools/cache_model.h"

namespace quern::test {

class plain_cache {
 public:
  explicit plain_cache(const cache_shape& shape) : shape_(shape) {}
  bool access(std::uint64_t address) {
    const std::uint64_t line = address / shape_.line_bytes;
    std::list<std::uint64_t>& set = sets_[line % shape_.sets()];
    const std::size_t before = set.size();
    set.remove(line);
    const bool is_hit = set.size() != before;
    set.push_back(line);
    if (set.size() > shape_.ways) set.pop_front();
    return is_hit;
  }

 private:
  cache_shape shape_;
  std::map<std::uint64_t, std::list<std::uint64_t>> sets_;
};

}  // namespace quern::test
