// Numbers counted by the powers of two between which they lie.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace quern {

// Bin 0 is for 0, bin n for numbers of n bits: 1, 2 to 3, 4 to 7, ...
template <unsigned Bins>
struct power_histogram {
  std::array<std::uint64_t, Bins> counts{};

  static constexpr unsigned bins = Bins;
  static unsigned bin_of(std::uint64_t number) { return static_cast<unsigned>(std::bit_width(number)); }
  static std::uint64_t lowest(unsigned bin) { return bin == 0 ? 0 : std::uint64_t{1} << (bin - 1); }
  static std::uint64_t highest(unsigned bin) { return bin == 0 ? 0 : lowest(bin) * 2 - 1; }

  void add(std::uint64_t number) { ++counts[bin_of(number)]; }
  void add_to_bin(unsigned bin) { ++counts[bin]; }
};

}  // namespace quern
