// Constant predicates.
#include "sve/veclib/predicate/predicate_constant.h"

#include <gtest/gtest.h>

#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

constexpr std::uint64_t vl1 = 1, unallocated = 14, mul3 = 30, all = 31;

TEST(False, HasNoElement) {
  CpuContext ctx = context();
  EXPECT_EQ(VecPFalse(&ctx), PredV{});
}

TEST(TrueI, SetsAsManyElementsAsThePatternSaysEachByItsLowestBit) {
  CpuContext ctx = context();
  ctx.nzcv = flag_v;
  EXPECT_EQ(VecP8TrueI(all, &ctx), first_elements<std::uint8_t>(VL_BYTES));
  EXPECT_EQ(VecP32TrueI(vl1, &ctx), predicate_of<std::uint32_t>({0}));
  EXPECT_EQ(VecP64TrueI(all, &ctx), all_true<std::uint64_t>());
  EXPECT_EQ(VecP64TrueI(unallocated, &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, flag_v);
}

TEST(TrueFlgI, OfMul3LeavesWhatThreeDoesNotDivide) {
  constexpr std::size_t lanes16 = VL_BYTES / 2, expected = lanes16 / 3 * 3;  // 126 of 128 at 2048 bits
  CpuContext ctx = context();
  const PredV result = VecP16TrueFlgI(mul3, &ctx);
  for (std::size_t i = 0; i != lanes16; ++i) EXPECT_EQ(is_active<std::uint16_t>(result, i), i < expected) << i;
  for (std::size_t i = 0; i != lanes16; ++i) EXPECT_FALSE(is_active<std::uint8_t>(result, 2 * i + 1)) << i;
  EXPECT_EQ(ctx.nzcv, flag_n);  // the mask is the result itself, so that its last element is set
}

TEST(TrueFlgI, OfAnUnallocatedPatternIsNothingWithZAndC) {
  CpuContext ctx = context();
  ctx.nzcv = 0xF0000000;
  EXPECT_EQ(VecP16TrueFlgI(unallocated, &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, none_set);
}

}  // namespace
