// The grid of time and address keeps every byte, however many cells are joined.
#include "tools/plot/density_grid.h"

#include <gtest/gtest.h>

#include <random>

namespace quern::test {
namespace {

std::uint64_t bytes_in(const density_grid& grid) {
  std::uint64_t sum = 0;
  for (const auto& place : grid.runs())
    for (const density_grid::run& run : place) sum += run.bytes * run.rows / grid.joined_rows();
  return sum;
}

std::size_t runs_in(const density_grid& grid) {
  std::size_t sum = 0;
  for (const auto& place : grid.runs()) sum += place.size();
  return sum;
}

TEST(DensityGrid, HasAColumnARecordOfShortTraces) {
  density_grid grid(100, 149);
  grid.add(100, 0, 3, 64);
  grid.add(149, 0, 3, 64);
  EXPECT_EQ(grid.columns(), 50u);
  EXPECT_EQ(grid.runs().at(0), (std::vector<density_grid::run>{{0, 3, 1, 64}, {49, 3, 1, 64}}));
}

TEST(DensityGrid, MergesEqualCellsAboveEachOtherOfOnePlace) {
  density_grid grid(0, 9);
  for (const std::uint32_t row : {5, 6, 7, 9}) grid.add(4, 1, row, 16);
  grid.add(4, 1, 8, 8);
  grid.add(4, 0, 8, 16);
  const auto runs = grid.runs();
  EXPECT_EQ(runs.at(0), (std::vector<density_grid::run>{{4, 8, 1, 16}}));
  EXPECT_EQ(runs.at(1), (std::vector<density_grid::run>{{4, 5, 3, 16}, {4, 8, 1, 8}, {4, 9, 1, 16}}));
}

TEST(DensityGrid, SpansTheLongestTime) {
  density_grid grid(0, ~0ull);
  EXPECT_LE(grid.columns(), density_grid::most_columns);
  grid.add(~0ull, 0, 0, 1);
  EXPECT_EQ(grid.runs().at(0).at(0).column, grid.columns() - 1);
}

TEST(DensityGrid, KeepsEveryByteAndItsBoundsWhateverIsJoined) {
  std::mt19937 random(3);
  density_grid grid(0, 1'000'000, 5000);
  std::uint64_t bytes = 0;
  for (int i = 0; i != 50'000; ++i) {
    const std::uint64_t size = random() % 64 + 1;
    grid.add(random() % 1'000'001, static_cast<std::uint32_t>(random() % 3),
             static_cast<std::uint32_t>(random() % 1000), size);
    bytes += size;
  }
  EXPECT_EQ(bytes_in(grid), bytes);
  EXPECT_LE(runs_in(grid), 5000u);
  grid.coarsen_to(300);
  EXPECT_LE(runs_in(grid), 300u);
  EXPECT_EQ(bytes_in(grid), bytes);
}

TEST(DensityGrid, EndsJoiningWhenNothingIsLeftToJoin) {
  density_grid grid(0, 3);
  for (std::uint32_t place = 0; place != 5; ++place) grid.add(place % 4, place, 0, 1);
  grid.coarsen_to(1);
  EXPECT_EQ(runs_in(grid), 5u);
  EXPECT_EQ(grid.columns(), 1u);
}

}  // namespace
}  // namespace quern::test
