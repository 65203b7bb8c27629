// A double of the C library's square roots, which records what they are asked for. Their results are 42: a handler that
// calls them must not care.
#pragma once

#include <vector>

namespace quern {

// What was asked for since one of these was made.
class libc_roots {
 public:
  libc_roots();
  std::vector<float> of_singles() const;
  std::vector<double> of_doubles() const;
};

}  // namespace quern
