// Filling cells and joining them.
#include "tools/plot/density_grid.h"

#include <algorithm>
#include <utility>

namespace quern {

density_grid::density_grid(std::uint64_t first, std::uint64_t last, std::size_t most_cells)
    : first_(first), last_(last), most_cells_(most_cells) {
  while ((last_ - first_) >> column_bits_ >= most_columns) ++column_bits_;
}

void density_grid::add(std::uint64_t time, std::uint32_t place, std::uint32_t row, std::uint64_t bytes) {
  highest_row_ = std::max(highest_row_, row);
  const auto column = static_cast<std::uint32_t>((time - first_) >> column_bits_);
  cells_[key_of({place, column, row >> row_shift_})] += bytes;
  while (cells_.size() > most_cells_ && coarsen()) continue;
}

// Joins rows or columns, whichever there are more of.
bool density_grid::coarsen() {
  const bool can_join_rows = row_shift_ < most_row_shift && highest_row_ >> row_shift_ != 0;
  const bool joins_rows = can_join_rows && highest_row_ >> row_shift_ >= columns();
  if (!joins_rows && columns() == 1) return false;
  ++(joins_rows ? row_shift_ : column_bits_);
  for (const auto& [key, bytes] : std::exchange(cells_, {})) {
    cell at = cell_of(key);
    (joins_rows ? at.row : at.column) /= 2;
    cells_[key_of(at)] += bytes;
  }
  return true;
}

void density_grid::coarsen_to(std::size_t most) {
  const auto number = [&] {
    std::size_t sum = 0;
    for (const auto& place : runs()) sum += place.size();
    return sum;
  };
  while (number() > most && coarsen()) continue;
}

std::vector<std::vector<density_grid::run>> density_grid::runs() const {
  std::vector<std::pair<std::uint64_t, std::uint64_t>> cells(cells_.begin(), cells_.end());
  std::sort(cells.begin(), cells.end());
  std::vector<std::vector<run>> found;
  for (const auto& [key, bytes] : cells) {
    const cell at = cell_of(key);
    if (found.size() <= at.place) found.resize(at.place + 1);
    std::vector<run>& runs = found[at.place];
    const std::uint32_t row = at.row << row_shift_;
    const bool goes_on = !runs.empty() && runs.back().column == at.column &&
                         runs.back().row + runs.back().rows == row && runs.back().bytes == bytes;
    if (goes_on)
      runs.back().rows += joined_rows();
    else
      runs.push_back({at.column, row, joined_rows(), bytes});
  }
  return found;
}

}  // namespace quern
