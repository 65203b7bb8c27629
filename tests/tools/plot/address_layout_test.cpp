// The address axis: areas without the wide gaps between them, all of them to be seen.
#include "tools/plot/address_layout.h"

#include <gtest/gtest.h>

namespace quern::test {
namespace {

TEST(AddressLayout, CutsAtWideGapsAlone) {
  struct {
    std::vector<touched_range> ranges;
    std::size_t areas;
  } const cases[] = {
      {{{0x1000, 0x1FFF}}, 1},
      {{{0x1000, 0x1FFF}, {0x2400, 0x2FFF}}, 1},
      {{{0x1000, 0x1FFF}, {0x3000, 0x3FFF}}, 2},          // a page
      {{{0x100000, 0x1FFFFF}, {0x201000, 0x2FFFFF}}, 1},  // a page, beside megabytes
      {{{0x100000, 0x1FFFFF}, {0x300000, 0x3FFFFF}}, 2},
      {{{0, 0x3F}, {~0ull - 0x3F, ~0ull}}, 2},
  };
  for (const auto& [ranges, areas] : cases) EXPECT_EQ(address_layout(ranges).areas().size(), areas);
}

TEST(AddressLayout, KeepsTheWidestGapsWhereThereAreMany) {
  std::vector<touched_range> ranges;
  std::uint64_t at = 0;
  for (std::uint64_t i = 0; i != 20; ++i) {
    ranges.push_back({at, at + 0xFFF});
    at += 0x1000 + (i < 7 ? 0x1000000 : 0x100000);
  }
  const address_layout layout(ranges);
  ASSERT_EQ(layout.areas().size(), address_layout::most_areas);
  EXPECT_EQ(layout.find(ranges[6].last), &layout.areas()[6]);
  EXPECT_EQ(layout.find(ranges[7].first), &layout.areas()[7]);
  EXPECT_EQ(layout.find(ranges[19].last), &layout.areas()[7]);
}

TEST(AddressLayout, ShowsTheSmallBesideTheLargeWithinTheAxis) {
  const address_layout layout({{0x1000, 0x103F}, {0x100000000, 0x1FFFFFFFF}, {0x7FFF0000, 0x7FFF0FFF}});
  double end = 0;
  for (const address_area& area : layout.areas()) {
    EXPECT_GE(area.bottom, end);
    EXPECT_GE(area.height, 0.1);
    end = area.bottom + area.height;
  }
  EXPECT_LE(end, 1);
}

TEST(AddressLayout, FindsAreasByAddressAndByRow) {
  const address_layout layout({{0x1000, 0x1FFF}, {0x100000000, 0x1FFFFFFFF}});
  ASSERT_EQ(layout.areas().size(), 2u);
  const auto& [low, high] = std::pair(layout.areas()[0], layout.areas()[1]);
  EXPECT_EQ(layout.find(0xFFF), nullptr);
  EXPECT_EQ(layout.find(0x2000), nullptr);
  EXPECT_EQ(layout.find(0x200000000), nullptr);
  EXPECT_EQ(layout.find(0x1FFF), &layout.areas()[0]);
  EXPECT_EQ(layout.find(0x100000000), &layout.areas()[1]);
  EXPECT_EQ(low.row_of(0x1000), 0u);
  EXPECT_EQ(low.row_of(0x1FFF), low.rows() - 1);
  EXPECT_EQ(high.row_of(0x1FFFFFFFF), high.first_row + high.rows() - 1);
  EXPECT_EQ(&layout.area_of_row(low.rows() - 1), &layout.areas()[0]);
  EXPECT_EQ(&layout.area_of_row(high.first_row), &layout.areas()[1]);
}

// What rows are joined with must be of their own area.
TEST(AddressLayout, LeavesRowsUnusedBetweenAreas) {
  const address_layout layout({{0, 0xFFF}, {0x10000, 0x10FFF}, {0x20000, 0x2FFFF}});
  for (std::size_t i = 0; i != layout.areas().size(); ++i) {
    const address_area& area = layout.areas()[i];
    EXPECT_EQ(area.first_row % address_layout::row_unit, 0u);
    const std::uint32_t next = i + 1 == layout.areas().size() ? layout.rows() : layout.areas()[i + 1].first_row;
    EXPECT_GE(next, area.first_row + area.rows() + address_layout::row_unit);
  }
}

}  // namespace
}  // namespace quern::test
