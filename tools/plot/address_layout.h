// The address axis of a plot: the areas of memory that a trace touches, one above the other, without what lies between.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/plot/touched_ranges.h"

namespace quern {

// Rows of one size, and where they are drawn: a share of the axis, counted from its lower end.
struct address_area {
  std::uint64_t first = 0, last = 0;  // whole rows
  unsigned row_bits = 0;              // a row is 2^row_bits bytes
  std::uint32_t first_row = 0;        // counted through all areas; a multiple of address_layout::row_unit
  double bottom = 0, height = 0;

  std::uint32_t rows() const { return static_cast<std::uint32_t>((last - first) >> row_bits) + 1; }
  std::uint32_t row_of(std::uint64_t address) const {
    return first_row + static_cast<std::uint32_t>((address - first) >> row_bits);
  }
};

class address_layout {
 public:
  static constexpr std::uint32_t row_unit = 64;  // so many rows may be joined; as many are unused between areas
  static constexpr std::size_t most_areas = 8;

  // Cuts at the widest gaps between ranges, which are by rising address. Larger areas are drawn larger, but not in
  // proportion: the smallest is to be seen, too.
  explicit address_layout(const std::vector<touched_range>& ranges);

  const std::vector<address_area>& areas() const { return areas_; }
  std::uint32_t rows() const { return rows_; }
  const address_area* find(std::uint64_t address) const;     // null where no area is
  const address_area& area_of_row(std::uint32_t row) const;  // of a row that is in one

 private:
  std::vector<address_area> areas_;
  std::uint32_t rows_ = 0;
};

}  // namespace quern
