// How far each access of an instruction is from its last, counted by powers of two.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace quern {

struct load_store_count {
  std::uint64_t loads = 0, stores = 0;
  std::uint64_t sum() const { return loads + stores; }
};

// Bin 0 holds strides of 0; bin n those of 2^(n-1) to 2^n - 1 bytes, bin -n the same backwards. The outermost bins hold
// all beyond, too.
class stride_counts {
 public:
  static constexpr int outermost = 25;

  void add(std::int64_t stride, bool is_load) {
    load_store_count& bin = bins_[index_of(bin_of(stride))];
    ++(is_load ? bin.loads : bin.stores);
  }
  const load_store_count& bin(int number) const { return bins_[index_of(number)]; }

  static int bin_of(std::int64_t stride) {
    const auto bits = static_cast<std::uint64_t>(stride);
    const int width = std::min(static_cast<int>(std::bit_width(stride < 0 ? 0 - bits : bits)), outermost);
    return stride < 0 ? -width : width;
  }

 private:
  static std::size_t index_of(int bin) {
    const int index = bin + outermost;
    return static_cast<std::size_t>(index);
  }

  std::array<load_store_count, 2 * outermost + 1> bins_{};
};

}  // namespace quern
