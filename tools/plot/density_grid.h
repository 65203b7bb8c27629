// What was touched when, in bytes: a grid of time and address in which only cells with something in them take memory,
// and of which there are at most so many: where they get more, cells are joined in pairs.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace quern {

class density_grid {
 public:
  static constexpr std::uint32_t most_columns = 2048;
  static constexpr unsigned most_row_shift = 6;  // rows are joined up to 64

  // Cells of one column and one place that lie above each other with the same number of bytes.
  struct run {
    std::uint32_t column, row, rows;  // rows as they were given, before any were joined
    std::uint64_t bytes;              // of each cell
    bool operator==(const run&) const = default;
  };

  // Time goes from `first` to `last`; of rows there are less than 65,536.
  density_grid(std::uint64_t first, std::uint64_t last, std::size_t most_cells = std::size_t{1} << 17);

  // Bytes that an instruction accessed in a row. Time is in the range that was given.
  void add(std::uint64_t time, std::uint32_t place, std::uint32_t row, std::uint64_t bytes);

  // Joins cells until the runs of all places are at most `most`, or no more can be joined.
  void coarsen_to(std::size_t most);

  std::vector<std::vector<run>> runs() const;  // by place; each by column, then row
  std::uint64_t first_time() const { return first_; }
  unsigned column_bits() const { return column_bits_; }  // a column is 2^column_bits long
  std::uint32_t joined_rows() const { return std::uint32_t{1} << row_shift_; }
  std::uint32_t columns() const { return static_cast<std::uint32_t>((last_ - first_) >> column_bits_) + 1; }

 private:
  struct cell {
    std::uint32_t place, column, row;
  };
  static std::uint64_t key_of(const cell& at) {
    return std::uint64_t{at.place} << 48 | std::uint64_t{at.column} << 16 | at.row;
  }
  static cell cell_of(std::uint64_t key) {
    return {static_cast<std::uint32_t>(key >> 48), static_cast<std::uint32_t>(key >> 16),
            static_cast<std::uint32_t>(key & 0xFFFF)};
  }
  bool coarsen();

  std::uint64_t first_, last_;
  std::size_t most_cells_;
  unsigned column_bits_ = 0, row_shift_ = 0;
  std::uint32_t highest_row_ = 0;
  std::unordered_map<std::uint64_t, std::uint64_t> cells_;  // bytes by key
};

}  // namespace quern
