// Wide integers: reading lanes, shifts with clamped counts, and 256 bits.
#include "sve/arith/integer/wide_integer.h"

#include <gtest/gtest.h>

#include "sve/arith/integer/big_integer.h"

namespace {

constexpr std::uint64_t top_bit = std::uint64_t{1} << 63, all_ones = ~std::uint64_t{0};

constexpr int128 wide(std::uint64_t high, std::uint64_t low) { return static_cast<int128>(uint128{high} << 64 | low); }

// What a failure shows of 128 bits.
std::string text(int128 i) {
  char digits[36];
  std::snprintf(digits, sizeof digits, "%016llx:%016llx", static_cast<unsigned long long>(i >> 64),
                static_cast<unsigned long long>(i));
  return digits;
}

TEST(Int, ReadsTheLowBitsByTheirSign) {
  static constexpr struct {
    std::uint64_t v;
    int size, is_unsigned;
    int128 expected;
  } cases[] = {
      {0xFF, 8, 0, -1},
      {0xFF, 8, 1, 255},
      {0x1FF, 8, 1, 255},
      {0x17F, 8, 0, 127},
      {0x80, 8, 0, -128},
      {0x8000, 16, 0, -32768},
      {0xFFFFFFFF, 32, 1, 0xFFFFFFFF},
      {0xFFFFFFFF, 32, 0, -1},
      {top_bit, 64, 0, wide(all_ones, top_bit)},
      {top_bit, 64, 1, wide(0, top_bit)},
      {0xFF, 8, 2, -1},  // 1 alone is unsigned
      {0xFF, 8, -1, -1},
  };
  for (const auto& c : cases)
    EXPECT_EQ(text(Int(c.v, c.size, c.is_unsigned)), text(c.expected)) << c.v << ' ' << c.size;
}

TEST(Int, OfNoBitsIs0UnsignedAndTheWrappedSignBitOtherwise) {
  EXPECT_EQ(text(Int(all_ones, 0, 1)), text(0));
  EXPECT_EQ(text(Int(all_ones, -3, 1)), text(0));
  EXPECT_EQ(text(Int(top_bit, 0, 0)), text(-1));
  EXPECT_EQ(text(Int(top_bit - 1, 0, 0)), text(0));
}

TEST(UInt, IsTheUnsignedReading) { EXPECT_EQ(text(UInt(0x1FF, 8)), text(255)); }

TEST(SInt, KnowsTheSizesOfLanesAlone) {
  EXPECT_EQ(SInt(0x180, 8), -128);
  EXPECT_EQ(SInt(0x18000, 16), -32768);
  EXPECT_EQ(SInt(0xFFFFFFFF, 32), -1);
  EXPECT_EQ(SInt(all_ones, 64), -1);
  for (const int size : {0, 1, 7, 24, 63, 65, 128}) EXPECT_EQ(SInt(all_ones, size), 0) << size;
}

TEST(WideArithmetic, WrapsAt128Bits) {
  constexpr int128 least = wide(top_bit, 0);
  EXPECT_EQ(text(AbsInt(least)), text(least));
  EXPECT_EQ(text(AbsInt(-5)), text(5));
  EXPECT_EQ(text(NegInt(least)), text(least));
  EXPECT_EQ(text(SubInt(least, 1)), text(wide(top_bit - 1, all_ones)));
  EXPECT_EQ(text(AddInt(wide(top_bit - 1, all_ones), 1)), text(least));
  EXPECT_EQ(bits(wide(3, 7)), 7u);
}

TEST(ShiftLeft, CountsModulo64WhateverTheSize) {
  EXPECT_EQ(ShiftLeft(1, 65, 8), 2u);
  EXPECT_EQ(ShiftLeft(0xFF, 4, 8), 0xFF0u);
}

TEST(ShiftLeftInt, TakesCountsAbove64As64) {
  EXPECT_EQ(text(ShiftLeftInt(1, 100)), text(wide(1, 0)));
  EXPECT_EQ(text(ShiftLeftInt(1, 64)), text(wide(1, 0)));
  EXPECT_EQ(text(ShiftLeftInt(1, 63)), text(wide(0, top_bit)));
  EXPECT_EQ(text(ShiftLeftInt(-1, 200)), text(wide(all_ones, 0)));
}

TEST(ShiftLeftInt, ByANegativeCountShiftsRight) {
  EXPECT_EQ(text(ShiftLeftInt(-256, -4)), text(-16));
  EXPECT_EQ(text(ShiftLeftInt(wide(2, 0), -100)), text(ShiftRightInt(wide(2, 0), 65)));
}

TEST(ShiftRightInt, TakesCountsAbove65As65) {
  EXPECT_EQ(text(ShiftRightInt(-1, 70)), text(-1));
  for (const int128 a : {wide(0x8123456789ABCDEF, 5), wide(0x7123456789ABCDEF, all_ones)}) {
    for (const int n : {66, 70, 127, 129, 1000}) EXPECT_EQ(text(ShiftRightInt(a, n)), text(a >> 65)) << n;
    for (const int n : {0, 1, 63, 64, 65}) EXPECT_EQ(text(ShiftRightInt(a, n)), text(a >> n)) << n;
  }
}

TEST(ShiftRightInt, By128AsksTheTwoTopBits) {
  EXPECT_EQ(text(ShiftRightInt(wide(0xC000000000000000, 0), 128)), text(-1));  // -2^126
  EXPECT_EQ(text(ShiftRightInt(wide(0x8000000000000000, 0), 128)), text(0));
  EXPECT_EQ(text(ShiftRightInt(wide(0x4000000000000000, 0), 128)), text(0));
}

TEST(BigInt, IsSignExtendedFrom128Bits) {
  const BigInt negative = toBigInt(-2), positive = toBigInt(wide(3, 7));
  EXPECT_THAT(negative.words, testing::ElementsAre(all_ones - 1, all_ones, all_ones, all_ones));
  EXPECT_THAT(positive.words, testing::ElementsAre(7, 3, 0, 0));
}

TEST(BigInt, AddsWithCarriesBetweenWords) {
  EXPECT_THAT(AddBigInt({{all_ones, all_ones, 5, 0}}, {{1, 0, 0, 0}}).words, testing::ElementsAre(0, 0, 6, 0));
  EXPECT_THAT(AddBigInt(toBigInt(-1), toBigInt(1)).words, testing::ElementsAre(0, 0, 0, 0));
}

TEST(BigInt, ShiftsRightWithItsSign) {
  const BigInt b{{1, 2, 3, top_bit}};
  EXPECT_THAT(ShiftRightBigInt(b, 0).words, testing::ElementsAre(1, 2, 3, top_bit));
  EXPECT_THAT(ShiftRightBigInt(b, 64).words, testing::ElementsAre(2, 3, top_bit, all_ones));
  EXPECT_THAT(ShiftRightBigInt(b, 65).words, testing::ElementsAre(1 | top_bit, 1, top_bit >> 1 | top_bit, all_ones));
  EXPECT_THAT(ShiftRightBigInt(b, 255).words, testing::ElementsAre(all_ones, all_ones, all_ones, all_ones));
}

}  // namespace
