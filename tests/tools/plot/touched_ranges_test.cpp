// Ranges of touched addresses are exact to a granule while they are few, and cover all that was touched when not.
#include "tools/plot/touched_ranges.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace quern::test {
namespace {

using ranges = std::vector<touched_range>;

TEST(TouchedRanges, AreOneWhereTheyMeetAndInOrder) {
  struct {
    ranges added, wanted;
  } const cases[] = {
      {{}, {}},
      {{{0x1000, 0x10FF}}, {{0x1000, 0x10FF}}},
      {{{0x1001, 0x1001}}, {{0x1000, 0x103F}}},
      {{{0x1040, 0x107F}, {0x1000, 0x103F}}, {{0x1000, 0x107F}}},
      {{{0x1080, 0x10BF}, {0x1000, 0x103F}}, {{0x1000, 0x103F}, {0x1080, 0x10BF}}},
      {{{0x1080, 0x10BF}, {0x1000, 0x103F}, {0x1040, 0x107F}}, {{0x1000, 0x10BF}}},
      {{{0x1000, 0x1FFF}, {0x1400, 0x14FF}}, {{0x1000, 0x1FFF}}},
      {{{0x1400, 0x14FF}, {0x1600, 0x16FF}, {0x1000, 0x1FFF}}, {{0x1000, 0x1FFF}}},
      {{{0, 0}, {~0ull, ~0ull}}, {{0, 0x3F}, {~0ull - 0x3F, ~0ull}}},
  };
  for (const auto& [added, wanted] : cases) {
    touched_ranges touched;
    for (const touched_range& each : added) touched.add(each.first, each.last);
    EXPECT_EQ(touched.ranges(), wanted);
  }
}

TEST(TouchedRanges, AreThoseOfASetOfLines) {
  std::mt19937_64 random(1);
  touched_ranges touched;
  std::set<std::uint64_t> lines;
  for (int i = 0; i != 500; ++i) {
    const std::uint64_t first = random() % 0x10000, last = first + random() % 300;
    touched.add(first, last);
    for (std::uint64_t line = first / 64; line <= last / 64; ++line) lines.insert(line);
  }
  std::set<std::uint64_t> found;
  for (const touched_range& range : touched.ranges())
    for (std::uint64_t line = range.first / 64; line <= range.last / 64; ++line) EXPECT_TRUE(found.insert(line).second);
  EXPECT_EQ(found, lines);
}

TEST(TouchedRanges, AreNeverMoreThanTheirMostAndCoverAll) {
  std::mt19937_64 random(2);
  touched_ranges touched(10);
  std::vector<std::uint64_t> addresses;
  for (int i = 0; i != 1000; ++i) {
    addresses.push_back(random());
    touched.add(addresses.back(), addresses.back());
  }
  const ranges found = touched.ranges();
  EXPECT_LE(found.size(), 10u);
  for (const std::uint64_t address : addresses)
    EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const touched_range& range) {
      return range.first <= address && address <= range.last;
    })) << address;
}

}  // namespace
}  // namespace quern::test
