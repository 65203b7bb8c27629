// The last active element, and the one after it.
#include "sve/veclib/permute/last_element.h"

#include <gtest/gtest.h>

#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

constexpr std::size_t top8 = VL_BYTES - 1, top16 = VL_BYTES / 2 - 1;

PredV bytes(std::initializer_list<std::size_t> numbers) { return predicate_of<std::uint8_t>(numbers); }

const VecV numbers8 = counting_vector<std::uint8_t>(0x80), numbers16 = counting_vector<std::uint16_t>(0x8000);

TEST(LastAV, IsTheLaneAfterTheLastActiveOneAndLaneZeroAtTheEndOrWithNone) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU8LastAV(bytes({1, 5}), numbers8, &ctx), 0x86u);
  EXPECT_EQ(VecU8LastAV(bytes({top8}), numbers8, &ctx), 0x80u);
  EXPECT_EQ(VecU8LastAV(PredV{}, numbers8, &ctx), 0x80u);
  EXPECT_EQ(VecH16LastAV(predicate_of<std::uint16_t>({2}), numbers16, &ctx), 0x8003u);
}

TEST(LastBV, IsTheLastActiveLaneAndTheTopLaneWithNone) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU8LastBV(bytes({1, 5}), numbers8, &ctx), 0x85u);
  EXPECT_EQ(VecU8LastBV(PredV{}, numbers8, &ctx), static_cast<std::uint8_t>(0x80 + top8));
  EXPECT_EQ(VecU16LastBV(PredV{}, numbers16, &ctx), 0x8000 + top16);
  EXPECT_EQ(VecD64LastBV(PredV{}, numbers8, &ctx), lane_of<std::uint64_t>(numbers8, VL_BYTES / 8 - 1));
}

TEST(LastBV, LooksAtTheLowestBitsAlone) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU16LastBV(bytes({2, 7}), numbers16, &ctx), 0x8001u);
}

TEST(CondXASV, IsTheScalarWithNoActiveLaneAndWrapsToLaneZero) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU8CondXASV(PredV{}, 0x12, numbers8, &ctx), 0x12u);
  EXPECT_EQ(VecU8CondXASV(bytes({top8}), 0x12, numbers8, &ctx), 0x80u);
  EXPECT_EQ(VecU8CondXASV(bytes({0}), 0x12, numbers8, &ctx), 0x81u);
  EXPECT_EQ(VecF32CondXASV(PredV{}, 0x12345678, numbers8, &ctx), 0x12345678u);
}

TEST(CondXBSV, IsTheScalarWithNoActiveLane) {
  CpuContext ctx = context();
  EXPECT_EQ(VecU16CondXBSV(PredV{}, 0x1234, numbers16, &ctx), 0x1234u);
  EXPECT_EQ(VecU16CondXBSV(predicate_of<std::uint16_t>({0, 3}), 0x1234, numbers16, &ctx), 0x8003u);
}

TEST(VCondXVV, FillsAllLanesOrKeepsTheVectorWithNoActiveLane) {
  CpuContext ctx = context();
  const VecV old = counting_vector<std::uint16_t>(7);
  const auto all = [](std::uint16_t value) { return counting_vector<std::uint16_t>(value, 0); };
  EXPECT_EQ(VecU16VCondXAVV(PredV{}, old, numbers16, &ctx), old);
  EXPECT_EQ(VecU16VCondXBVV(PredV{}, old, numbers16, &ctx), old);
  EXPECT_EQ(VecU16VCondXAVV(predicate_of<std::uint16_t>({3}), old, numbers16, &ctx), all(0x8004));
  EXPECT_EQ(VecU16VCondXAVV(predicate_of<std::uint16_t>({top16}), old, numbers16, &ctx), all(0x8000));
  EXPECT_EQ(VecU16VCondXBVV(predicate_of<std::uint16_t>({3}), old, numbers16, &ctx), all(0x8003));
}

}  // namespace
