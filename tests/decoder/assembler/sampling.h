// Words to try the decoder with: the same ones in every run.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace quern::test {

using word_source = std::mt19937;  // its numbers are the same everywhere, as its standard says

// Words with the bits of `mask` as in `value`: the others all clear, all set, each set alone, each clear alone, and
// `random_count` times random.
inline std::vector<std::uint32_t> words_of_pattern(std::uint32_t mask, std::uint32_t value, unsigned random_count,
                                                   word_source& random) {
  std::vector<std::uint32_t> words{value, value | ~mask};
  for (std::uint32_t rest = ~mask; rest != 0; rest &= rest - 1) {
    const std::uint32_t bit = rest & -rest;
    words.push_back(value | bit);
    words.push_back(value | (~mask & ~bit));
  }
  for (unsigned i = 0; i != random_count; ++i) words.push_back(value | (static_cast<std::uint32_t>(random()) & ~mask));
  return words;
}

}  // namespace quern::test
