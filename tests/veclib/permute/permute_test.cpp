// Elements moved by position.
#include "sve/veclib/permute/permute.h"

#include <gtest/gtest.h>

#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

constexpr std::size_t lanes8 = VL_BYTES, lanes16 = VL_BYTES / 2, lanes32 = VL_BYTES / 4, lanes64 = VL_BYTES / 8;

const VecV numbers8 = counting_vector<std::uint8_t>(0x80), others8 = counting_vector<std::uint8_t>(0x10);
const VecV numbers32 = counting_vector<std::uint32_t>(0x80000000), others32 = counting_vector<std::uint32_t>(1);

TEST(ReverseV, TurnsTheOrderOfLanes) {
  CpuContext ctx = context();
  const VecV result = VecU32ReverseV(numbers32, &ctx);
  for (std::size_t i = 0; i != lanes32; ++i) EXPECT_EQ(lane_of<std::uint32_t>(result, i), 0x80000000 + lanes32 - 1 - i);
}

TEST(ReverseP, MovesAllBitsOfAnElement) {
  CpuContext ctx = context();
  EXPECT_EQ(VecP8ReverseP(predicate_of<std::uint8_t>({0, 2}), &ctx),
            predicate_of<std::uint8_t>({lanes8 - 1, lanes8 - 3}));
  EXPECT_EQ(VecP32ReverseP(predicate_of<std::uint8_t>({0, 3}), &ctx),
            predicate_of<std::uint8_t>({lanes8 - 4, lanes8 - 1}));
}

TEST(TblVV, OfANumberThatIsNoLaneIsZero) {
  CpuContext ctx = context();
  const VecV table = counting_vector<std::uint16_t>(0x1234);
  VecV indexes = counting_vector<std::uint16_t>(0, 0);
  quern::set_lane<std::uint16_t>(indexes.bytes, 1, lanes16);  // 128 at 2048 bits
  quern::set_lane<std::uint16_t>(indexes.bytes, 2, lanes16 - 1);
  quern::set_lane<std::uint16_t>(indexes.bytes, 3, 0xFFFF);
  const VecV result = VecU16TblVV(table, indexes, &ctx);
  for (std::size_t i = 0; i != lanes16; ++i) {
    const std::size_t expected = i == 1 || i == 3 ? 0 : i == 2 ? 0x1234 + lanes16 - 1 : 0x1234;
    EXPECT_EQ(lane_of<std::uint16_t>(result, i), expected) << i;
  }
}

TEST(UnpackV, ExtendsTheLowOrTheHighHalfByTheTagsSign) {
  CpuContext ctx = context();
  const VecV n = counting_vector<std::uint16_t>(0x7FF0, 0x0101);
  const VecV low = VecS32UnpackLoV(n, &ctx), high = VecS32UnpackHiV(n, &ctx), unsigned_high = VecU32UnpackHiV(n, &ctx);
  for (std::size_t i = 0; i != lanes32; ++i) {
    const std::int32_t low_lane = lane_of<std::int16_t>(n, i), high_lane = lane_of<std::int16_t>(n, lanes32 + i);
    EXPECT_EQ(lane_of<std::int32_t>(low, i), low_lane) << i;
    EXPECT_EQ(lane_of<std::int32_t>(high, i), high_lane) << i;
    EXPECT_EQ(lane_of<std::uint32_t>(unsigned_high, i), lane_of<std::uint16_t>(n, lanes32 + i)) << i;
  }
  EXPECT_EQ(lane_of<std::int16_t>(VecS16UnpackLoV(numbers8, &ctx), 0), -128);
  EXPECT_EQ(lane_of<std::int64_t>(VecS64UnpackHiV(numbers32, &ctx), 0), lane_of<std::int32_t>(numbers32, lanes64));
}

TEST(UnpackP, MakesElementsOfTwoBits) {
  CpuContext ctx = context();
  const PredV n = predicate_of<std::uint8_t>({0, 3, lanes16, lanes8 - 1});
  EXPECT_EQ(VecPUnpackLoP(n, &ctx), predicate_of<std::uint16_t>({0, 3}));
  EXPECT_EQ(VecPUnpackHiP(n, &ctx), predicate_of<std::uint16_t>({0, lanes16 - 1}));
}

// The lanes of `first` from `from` on, `count` of them, and then those of `second` from 0 on.
template <class T>
void expect_joined(const VecV& result, const VecV& first, std::size_t from, std::size_t count, const VecV& second) {
  for (std::size_t i = 0; i != quern::lane_count<T>; ++i)
    EXPECT_EQ(lane_of<T>(result, i), i < count ? lane_of<T>(first, from + i) : lane_of<T>(second, i - count)) << i;
}

TEST(SlideVI, TakesTheBytesFromThePositionUpThenThoseOfTheSecond) {
  CpuContext ctx = context();
  const auto slide = [&](std::uint32_t position) { return VecU8SlideVI(numbers8, others8, position, &ctx); };
  expect_joined<std::uint8_t>(slide(3), numbers8, 3, lanes8 - 3, others8);
  expect_joined<std::uint8_t>(slide(lanes8 - 1), numbers8, lanes8 - 1, 1, others8);
  EXPECT_EQ(slide(0), numbers8);
  EXPECT_EQ(slide(lanes8), numbers8);  // no such byte
  EXPECT_EQ(slide(255 + lanes8), numbers8);
}

TEST(CompressVV, PacksActiveLanesAndClearsTheRest) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU32CompressVV(all_true<std::uint32_t>(), numbers32, &ctx), numbers32);
  EXPECT_EQ(VecU64CompressVV(PredV{}, numbers32, &ctx), VecV{});
  std::mt19937_64 random(1);
  for (int round = 0; round != 20; ++round) {
    const PredV pg = random_predicate(random);
    const VecV n = random_vector(random), result = VecU64CompressVV(pg, n, &ctx);
    std::size_t next = 0;
    for (std::size_t i = 0; i != lanes64; ++i) {
      if (!is_active<std::uint64_t>(pg, i)) continue;
      EXPECT_EQ(lane_of<std::uint64_t>(result, next++), lane_of<std::uint64_t>(n, i));
    }
    for (; next != lanes64; ++next) EXPECT_EQ(lane_of<std::uint64_t>(result, next), 0u);
  }
}

TEST(SpliceVV, OfOneActiveLaneIsThatLaneAndThenTheSecond) {
  CpuContext ctx = context();
  expect_joined<std::uint8_t>(VecU8SpliceVV(predicate_of<std::uint8_t>({5}), numbers8, others8, &ctx), numbers8, 5, 1,
                              others8);
}

TEST(SpliceVV, TakesInactiveLanesBetweenActiveOnesToo) {
  CpuContext ctx = context();
  expect_joined<std::uint32_t>(VecU32SpliceVV(predicate_of<std::uint32_t>({0, 2}), numbers32, others32, &ctx),
                               numbers32, 0, 3, others32);
  expect_joined<std::uint32_t>(VecU32SpliceVV(predicate_of<std::uint32_t>({lanes32 - 1}), numbers32, others32, &ctx),
                               numbers32, lanes32 - 1, 1, others32);
  EXPECT_EQ(VecU32SpliceVV(all_true<std::uint8_t>(), numbers32, others32, &ctx), numbers32);
}

TEST(SpliceVV, OfNoActiveLaneIsTheSecond) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU16SpliceVV(predicate_of<std::uint8_t>({1}), numbers8, others8, &ctx), others8);
}

TEST(Permutations, FollowTheContextsVectorLength) {
  CpuContext half = context(VL_BITS / 128);
  const VecV reversed = VecU8ReverseV(numbers8, &half), unpacked = VecU16UnpackHiV(numbers8, &half);
  for (std::size_t i = 0; i != lanes8; ++i) {
    const std::size_t expected = i < lanes16 ? (0x80 + lanes16 - 1 - i) & 0xFF : 0;
    EXPECT_EQ(lane_of<std::uint8_t>(reversed, i), expected) << i;
  }
  for (std::size_t i = 0; i != lanes16; ++i)
    EXPECT_EQ(lane_of<std::uint16_t>(unpacked, i), i < lanes32 ? numbers8.bytes[lanes32 + i] : 0) << i;
}

}  // namespace
