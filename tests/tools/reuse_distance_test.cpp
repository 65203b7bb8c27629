// The reuse distance, to the power of two, is that of a plain list of lines.
#include "tools/reuse_distance.h"

#include <gtest/gtest.h>

#include <random>

#include "plain_stack.h"

namespace quern::test {
namespace {

TEST(ReuseDistance, RandomAccessesHaveTheDistancesOfAPlainList) {
  for (const unsigned lines : {1, 2, 3, 4, 5, 8, 9, 100, 1000}) {
    std::mt19937 random(lines);
    reuse_distance fast;
    plain_stack plain;
    for (int i = 0; i != 20'000; ++i) {
      // Near ones more often than far ones, so that all bins are met.
      const std::uint64_t line = (random() % lines) >> (random() % 8);
      ASSERT_EQ(fast.access(line * 0x1234567), plain.access(line)) << lines << " lines, access " << i;
    }
  }
}

TEST(ReuseDistance, ALoopOverAnArrayHasItsLengthAsDistance) {
  for (const std::uint64_t length : {1, 2, 3, 64, 65, 1000, 1 << 20}) {
    reuse_distance distance;
    for (int round = 0; round != 3; ++round)
      for (std::uint64_t line = 0; line != length; ++line)
        ASSERT_EQ(distance.access(line), round == 0 ? reuse_distance::far : power_histogram<65>::bin_of(length - 1));
  }
}

// A line that has left the stack is as one that was never there; those that are in it keep their exact distances.
TEST(ReuseDistance, BeyondTheStackThereIsNoDistance) {
  constexpr std::uint64_t stack = 1 << reuse_distance::most_bits;
  reuse_distance distance;
  for (int round = 0; round != 2; ++round)
    for (std::uint64_t line = 0; line != stack + 1; ++line) ASSERT_EQ(distance.access(line), reuse_distance::far);
  EXPECT_EQ(distance.access(1), reuse_distance::most_bits);
  EXPECT_EQ(distance.access(stack), 1u);
  EXPECT_EQ(distance.access(stack - 5), 3u);
}

TEST(PowerHistogram, EachNumberIsInTheBinOfItsBits) {
  using histogram = power_histogram<65>;
  for (unsigned bin = 0; bin != histogram::bins; ++bin) {
    EXPECT_EQ(histogram::bin_of(histogram::lowest(bin)), bin);
    EXPECT_EQ(histogram::bin_of(histogram::highest(bin)), bin);
  }
  EXPECT_EQ(histogram::highest(64), ~std::uint64_t{0});
  EXPECT_EQ(histogram::highest(3), 7u);
}

}  // namespace
}  // namespace quern::test
