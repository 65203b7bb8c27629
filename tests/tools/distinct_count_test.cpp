// The count of different numbers is exact while they are few, and an estimate near it above.
#include "tools/distinct_count.h"

#include <gtest/gtest.h>

namespace quern::test {
namespace {

TEST(DistinctCount, IsExactUpTo256Numbers) {
  distinct_count numbers;
  for (int round = 0; round != 3; ++round)
    for (std::uint64_t number = 0; number != 256; ++number) numbers.add(number * number);
  EXPECT_TRUE(numbers.is_exact());
  EXPECT_EQ(numbers.count(), 256u);
  numbers.add(3);
  EXPECT_FALSE(numbers.is_exact());
}

// Three standard errors and a half.
TEST(DistinctCount, IsWithinSixPercentAboveWhateverTheNumbersAreLike) {
  for (const std::uint64_t step : {1, 64, 4096, 1 << 30}) {
    for (const std::uint64_t distinct : {257, 1000, 5000, 10'000, 20'000, 100'000, 1'000'000}) {
      distinct_count numbers;
      for (std::uint64_t i = 0; i != 2 * distinct; ++i) numbers.add(i % distinct * step);
      EXPECT_NEAR(static_cast<double>(numbers.count()), static_cast<double>(distinct),
                  0.06 * static_cast<double>(distinct))
          << step;
    }
  }
}

}  // namespace
}  // namespace quern::test
