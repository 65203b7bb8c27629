// Counts, reversals and comparisons of lanes.
#include "sve/arith/integer/bit_support.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t all_ones = ~std::uint64_t{0};

TEST(HighestBitSet, LooksAtTheLowBitsAlone) {
  EXPECT_EQ(HighestBitSet(0x1FF, 8), 7);
  EXPECT_EQ(HighestBitSet(0x100, 8), -1);
  EXPECT_EQ(HighestBitSet(all_ones, 64), 63);
  EXPECT_EQ(HighestBitSet(all_ones, 0), -1);
}

TEST(CountLeadingZeroBits, Of0IsTheWidth) {
  EXPECT_EQ(CountLeadingZeroBits(0, 16), 16);
  EXPECT_EQ(CountLeadingZeroBits(1, 16), 15);
  EXPECT_EQ(CountLeadingZeroBits(0xF8000, 16), 0);
}

TEST(CountLeadingSignBits, BeginsBelowTheSign) {
  EXPECT_EQ(CountLeadingSignBits(0xFFFF, 16), 15);
  EXPECT_EQ(CountLeadingSignBits(0xC000, 16), 1);
  EXPECT_EQ(CountLeadingSignBits(0x8000, 16), 0);
  EXPECT_EQ(CountLeadingSignBits(0x4000, 16), 0);
  EXPECT_EQ(CountLeadingSignBits(0, 16), 15);
  EXPECT_EQ(CountLeadingSignBits(all_ones, 64), 63);
  EXPECT_EQ(CountLeadingSignBits(std::uint64_t{1} << 63, 64), 0);
}

TEST(BitCount, CountsNoneOfNoBits) {
  EXPECT_EQ(BitCount(0xFFFF, 8), 8);
  EXPECT_EQ(BitCount(all_ones, 64), 64);
  EXPECT_EQ(BitCount(all_ones, 0), 0);
  EXPECT_EQ(BitCount(all_ones, -4), 0);
}

TEST(BitReverse, MirrorsTheLowBits) {
  EXPECT_EQ(BitReverse(0x101, 8), 0x80u);
  EXPECT_EQ(BitReverse(0x0003, 16), 0xC000u);
  EXPECT_EQ(BitReverse(1, 64), std::uint64_t{1} << 63);
  EXPECT_EQ(BitReverse(all_ones, 0), 0u);
  EXPECT_EQ(BitReverse(all_ones, -1), 0u);
}

TEST(Reverse, ReversesElementsOf12And4Bytes) {
  static constexpr struct {
    int bits, bytes;
    std::uint64_t expected;
  } cases[] = {
      {64, 1, 0xEFCDAB8967452301},
      {64, 2, 0xCDEF89AB45670123},
      {64, 4, 0x89ABCDEF01234567},
      {32, 1, 0xEFCDAB89},
      {32, 2, 0xCDEF89AB},
      {16, 1, 0xEFCD},
      {16, 2, 0xCDEF},
      {64, 8, 0},
      {64, 3, 0},
      {64, 0, 0},
      {16, 4, 0},
      {8, 2, 0},
  };
  for (const auto& c : cases) EXPECT_EQ(Reverse(0x0123456789ABCDEF, c.bits, c.bytes), c.expected) << c.bits << c.bytes;
}

TEST(PolynomialMult, AddsWithoutCarries) {
  EXPECT_TRUE(PolynomialMult(3, 3) == 5);
  EXPECT_TRUE(PolynomialMult(all_ones, 2) == uint128{all_ones} << 1);
  EXPECT_TRUE(PolynomialMult(std::uint64_t{1} << 63, std::uint64_t{1} << 63) == uint128{1} << 126);
}

TEST(MaxAndMin, GiveTheWholeOperandThatWins) {
  static constexpr struct {
    std::uint64_t a, b;
    int size, is_unsigned;
    std::uint64_t max, min;
  } cases[] = {
      {0x1FF, 0x0FF, 8, 1, 0x1FF, 0x1FF},  // a tie
      {0x1FF, 0x0FF, 8, 0, 0x1FF, 0x1FF},
      {0x180, 0x07F, 8, 1, 0x180, 0x07F},
      {0x180, 0x07F, 8, 0, 0x07F, 0x180},
      {0x8000, 1, 16, 2, 1, 0x8000},  // 1 alone is unsigned
      {0x80000000, 1, 32, 0, 1, 0x80000000},
      {all_ones, 1, 64, 0, 1, all_ones},
      {all_ones, 1, 64, 1, all_ones, 1},
      {5, 6, 24, 1, 0, 0},
      {5, 6, 128, 0, 0, 0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Max(c.a, c.b, c.size, c.is_unsigned), c.max) << c.a << ", " << c.b << " in " << c.size;
    EXPECT_EQ(Min(c.a, c.b, c.size, c.is_unsigned), c.min) << c.a << ", " << c.b << " in " << c.size;
  }
}

}  // namespace
