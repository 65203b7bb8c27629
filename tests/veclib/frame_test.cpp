// The frame: lane counts, elements of predicates, and what lies beyond a context's vector length.
#include "sve/veclib/frame.h"

#include <gtest/gtest.h>

#include "sve/veclib/integer/integer_arithmetic.h"
#include "tests/harness/library_context.h"

namespace {

using namespace quern;

constexpr VecV filled(unsigned char byte) {
  VecV vector{};
  for (unsigned char& each : vector.bytes) each = byte;
  return vector;
}

TEST(LaneCount, FollowsTheContextsUnits) {
  EXPECT_EQ(veclib::lanes<std::uint8_t>(library_context()), VL_BYTES);
  EXPECT_EQ(veclib::lanes<std::uint16_t>(library_context()), VL_BYTES / 2);
  EXPECT_EQ(veclib::lanes<std::uint32_t>(library_context()), VL_BYTES / 4);
  EXPECT_EQ(veclib::lanes<std::uint64_t>(library_context()), VL_BYTES / 8);
  EXPECT_EQ(veclib::lanes<std::uint16_t>(library_context(1)), 4u);
}

TEST(LaneCount, Reads26BitsOfTheUnits) { EXPECT_EQ(veclib::lanes<std::uint64_t>(library_context(0xFC000002)), 2u); }

TEST(PredicateElement, IsActiveByItsLowestBitAlone) {
  PredV predicate{};
  predicate.words[0] = 2;
  EXPECT_FALSE(veclib::is_active<std::uint16_t>(predicate, 0));
  EXPECT_TRUE(veclib::is_active<std::uint8_t>(predicate, 1));
  EXPECT_EQ(lane<std::uint16_t>(veclib::lane_masks<std::uint16_t>(predicate).bytes, 0), 0);
  predicate.words[0] = 1;
  EXPECT_TRUE(veclib::is_active<std::uint16_t>(predicate, 0));
  EXPECT_EQ(lane<std::uint16_t>(veclib::lane_masks<std::uint16_t>(predicate).bytes, 0), 0xFFFF);
}

TEST(PredicateElement, IsWrittenWithItsUpperBitsClear) {
  PredV predicate{};
  predicate.words[0] = ~std::uint64_t{0};
  veclib::set_element<std::uint32_t>(predicate, 1, true);
  EXPECT_EQ(predicate.words[0], 0xFFFFFFFFFFFFFF1F);
  veclib::set_element<std::uint32_t>(predicate, 1, false);
  EXPECT_EQ(predicate.words[0], 0xFFFFFFFFFFFFFF0F);
}

template <class T>
class LaneMasks : public testing::Test {};
using lane_types = testing::Types<std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(LaneMasks, lane_types);

TYPED_TEST(LaneMasks, AreOnesJustWhereAnElementIsActive) {
  PredV predicate{};
  for (std::size_t i = 0; i != std::size(predicate.words); ++i) predicate.words[i] = 0x9E3779B97F4A7C15 * (2 * i + 1);
  const VecV masks = veclib::lane_masks<TypeParam>(predicate);
  for (std::size_t i = 0; i != lane_count<TypeParam>; ++i) {
    const TypeParam expected = veclib::is_active<TypeParam>(predicate, i) ? static_cast<TypeParam>(-1) : TypeParam{0};
    EXPECT_EQ(lane<TypeParam>(masks.bytes, i), expected) << i;
  }
}

TEST(Merging, TakesInactiveLanesFromTheFirstOperand) {
  CpuContext ctx = library_context();
  PredV odd_elements{};
  for (std::uint64_t& word : odd_elements.words) word = 0x4444444444444444;  // of two bytes
  const VecV result = VecU16AbdVVM(filled(9), odd_elements, filled(3), &ctx);
  for (std::size_t i = 0; i != lane_count<std::uint16_t>; ++i)
    EXPECT_EQ(lane<std::uint16_t>(result.bytes, i), i % 2 == 0 ? 0x0909 : 0x0606) << i;
}

TEST(Loops, ClearWhatLiesBeyondTheVectorLength) {
  CpuContext ctx = library_context(1);
  PredV all{};
  for (std::uint64_t& word : all.words) word = ~std::uint64_t{0};
  const VecV result = VecU8AbdVVM(filled(9), all, filled(3), &ctx);
  for (std::size_t i = 0; i != VL_BYTES; ++i) EXPECT_EQ(result.bytes[i], i < 8 ? 6 : 0) << i;
  const auto compared =
      veclib::compare_lanes<std::uint8_t>([](auto a, auto b) { return a == b; }, ctx, all, filled(1), filled(1));
  EXPECT_EQ(compared.words[0], 0xFFu);
  const auto add = [](std::uint64_t a, std::uint64_t b) { return a + b; };
  EXPECT_EQ((veclib::reduce_lanes<std::uint8_t, std::uint64_t>(add, 0, ctx, all, filled(2))), 16u);
}

}  // namespace
