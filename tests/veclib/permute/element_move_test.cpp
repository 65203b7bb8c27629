// Selecting elements, copying one value to many, and MOVPRFX.
#include "sve/veclib/permute/element_move.h"

#include <gtest/gtest.h>

#include "sve/veclib/integer/index.h"
#include "sve/veclib/permute/move_prefix.h"
#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

constexpr std::size_t lanes16 = VL_BYTES / 2;

const VecV old = counting_vector<std::uint16_t>(0x100), fresh = counting_vector<std::uint16_t>(0x8000);
const PredV lanes_1_and_2 = predicate_of<std::uint16_t>({1, 2});

VecV all16(std::uint16_t value) { return counting_vector<std::uint16_t>(value, 0); }

// `base` with lanes 1 and 2 of `source`.
VecV merged(VecV base, const VecV& source) {
  for (const std::size_t i : {1, 2}) quern::set_lane(base.bytes, i, lane_of<std::uint16_t>(source, i));
  return base;
}

TEST(SelVV, TakesActiveLanesFromTheFirstSource) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU16SelVV(lanes_1_and_2, fresh, old, &ctx), merged(old, fresh));
}

TEST(MovePrefix, TakesActiveLanesAndKeepsOrClearsTheOthers) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU16MovePrefix1VM(old, lanes_1_and_2, fresh, &ctx), merged(old, fresh));
  EXPECT_EQ(VecU16MovePrefix1VZ(lanes_1_and_2, fresh, &ctx), merged(VecV{}, fresh));
  EXPECT_EQ(VecU32SpecialMoveV(fresh, &ctx), fresh);
}

TEST(Dup, FillsAllLanes) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU16DupS(0xABCD, &ctx), all16(0xABCD));
  EXPECT_EQ(VecS16DupI(-2, &ctx), all16(0xFFFE));
  EXPECT_EQ(VecF16DupI(0x3C00, &ctx), all16(0x3C00));
  EXPECT_EQ(VecS64DupMaskI(0x00FF00FF00FF00FF, &ctx), all16(0x00FF));
}

TEST(Dup, FillsActiveLanesAndKeepsOrClearsTheOthers) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU16DupSM(old, lanes_1_and_2, 0xABCD, &ctx), merged(old, all16(0xABCD)));
  EXPECT_EQ(VecH16DupSM(old, lanes_1_and_2, 0xABCD, &ctx), merged(old, all16(0xABCD)));
  EXPECT_EQ(VecS16DupIM(old, lanes_1_and_2, -2, &ctx), merged(old, all16(0xFFFE)));
  EXPECT_EQ(VecF16DupIM(old, lanes_1_and_2, 0x3C00, &ctx), merged(old, all16(0x3C00)));
  EXPECT_EQ(VecS16DupIZ(lanes_1_and_2, -2, &ctx), merged(VecV{}, all16(0xFFFE)));
}

TEST(ExtDupVI, FillsAllLanesWithOneAndClearsThemWhereThereIsNoSuchLane) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU16ExtDupVI(fresh, 3, &ctx), all16(0x8003));
  EXPECT_EQ(VecU16ExtDupVI(fresh, lanes16 - 1, &ctx), all16(0x8000 + lanes16 - 1));
  EXPECT_EQ(VecU16ExtDupVI(fresh, lanes16, &ctx), VecV{});
}

TEST(ExtDupVI, OfQuadwordsCopiesSixteenBytes) {
  CpuContext ctx = context();
  const VecV bytes = counting_vector<std::uint8_t>(0);
  constexpr std::uint32_t quadwords = VL_BYTES / 16;
  for (const std::uint32_t index : {0u, 3u, quadwords - 1, quadwords}) {
    const VecV result = VecU128ExtDupVI(bytes, index, &ctx);
    for (std::size_t i = 0; i != VL_BYTES; ++i)
      EXPECT_EQ(result.bytes[i], index < quadwords ? 16 * index + i % 16 : 0) << index << ' ' << i;
  }
}

TEST(InsertS, PutsTheScalarBelowAndDropsTheTopLane) {
  CpuContext ctx = context();
  const VecV result = VecU16InsertS(old, 0xABCD, &ctx);
  for (std::size_t i = 0; i != lanes16; ++i)
    EXPECT_EQ(lane_of<std::uint16_t>(result, i), i == 0 ? 0xABCD : 0x100 + i - 1) << i;
  EXPECT_EQ(lane_of<std::uint8_t>(VecB8InsertS(old, 0x12, &ctx), 0), 0x12);
}

TEST(Index, IsASeriesThatWraps) {
  CpuContext ctx = context();
  const VecV result = VecS8IndexII(-3, 7, &ctx);
  for (std::size_t i = 0; i != VL_BYTES; ++i)
    EXPECT_EQ(lane_of<std::uint8_t>(result, i), static_cast<std::uint8_t>(7 * i - 3)) << i;
  EXPECT_EQ(VecS16IndexIS(0x100, 1, &ctx), old);
  EXPECT_EQ(VecS16IndexSI(0x100, 1, &ctx), old);
  EXPECT_EQ(VecS64IndexSS(5, 0, &ctx), counting_vector<std::uint64_t>(5, 0));
}

}  // namespace
