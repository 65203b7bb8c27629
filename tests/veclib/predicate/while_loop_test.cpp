// Loop control, and CNTP.
#include "sve/veclib/predicate/while_loop.h"

#include <gtest/gtest.h>

#include "sve/veclib/predicate/element_count.h"
#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

using while4 = PredV(std::uint32_t, std::uint32_t, CpuContext*);
using while8 = PredV(std::uint64_t, std::uint64_t, CpuContext*);

constexpr std::uint32_t max32 = 0x7FFFFFFF, min32 = 0x80000000, umax32 = 0xFFFFFFFF;
constexpr std::uint64_t max64 = ~std::uint64_t{0} >> 1, min64 = max64 + 1, umax64 = ~std::uint64_t{0};
constexpr std::size_t every = VL_BYTES;  // bytes

template <class Scalar>
struct loop_case {
  PredV (*function)(Scalar, Scalar, CpuContext*);
  Scalar n, m;
  std::size_t count;  // of byte elements
};

const loop_case<std::uint32_t> cases4[] = {
    {VecS8While4LTSS, 0, 5, 5},
    {VecS8While4LTSS, 5, 5, 0},
    {VecS8While4LTSS, umax32, 3, 4},         // -1
    {VecS8While4LTSS, max32 - 2, max32, 2},  // stays false when the lane's number would wrap
    {VecS8While4LTSS, min32, max32, every},
    {VecS8While4LTSS, max32, min32, 0},
    {VecU8While4LTSS, umax32, 3, 0},
    {VecU8While4LTSS, umax32 - 4, umax32, 4},
    {VecU8While4LTSS, 0, umax32, every},
    {VecS8While4LESS, 0, 5, 6},
    {VecS8While4LESS, 5, 5, 1},
    {VecS8While4LESS, 6, 5, 0},
    {VecS8While4LESS, max32 - 3, max32 - 1, 3},  // the sum passes 32 bits further up
    {VecS8While4LESS, max32 - 1, max32, every},  // nothing is above the greatest
    {VecS8While4LESS, max32, max32, every},
    {VecU8While4LESS, max32, max32, 1},  // not the greatest unsigned
    {VecU8While4LESS, umax32 - 1, umax32, every},
    {VecU8While4LESS, umax32 - 3, umax32 - 1, 3},
};
const loop_case<std::uint64_t> cases8[] = {
    {VecS8While8LTSS, 0, 5, 5},
    {VecS8While8LTSS, max64 - 2, max64, 2},
    {VecS8While8LTSS, min64, max64, every},
    {VecS8While8LTSS, max64, min64, 0},
    {VecS8While8LTSS, std::uint64_t{1} << 32, 5, 0},  // all 64 bits count
    {VecU8While8LTSS, umax64 - 4, umax64, 4},
    {VecU8While8LTSS, 0, umax64, every},
    {VecS8While8LESS, max64 - 3, max64 - 1, 3},
    {VecS8While8LESS, max64, max64, every},
    {VecS8While8LESS, umax64, 1, 3},
    {VecU8While8LESS, umax64, umax64, every},
    {VecU8While8LESS, umax64 - 3, umax64 - 1, 3},
};

template <class Scalar>
void check(const loop_case<Scalar>& c) {
  CpuContext ctx = context();
  ctx.nzcv = flag_v;
  EXPECT_EQ(c.function(c.n, c.m, &ctx), first_elements<std::uint8_t>(c.count)) << c.n << ' ' << c.m;
  const std::uint32_t flags = c.count == 0 ? none_set : c.count == every ? flag_n : flag_n | flag_c;
  EXPECT_EQ(ctx.nzcv, flags) << c.n << ' ' << c.m;
}

TEST(While, CountsFromTheFirstOperandToTheSecondWithoutWrapping) {
  for (const auto& c : cases4) check(c);
  for (const auto& c : cases8) check(c);
}

TEST(While, OfTheGreatest64BitNumberIsAllElementsForEveryLaneWidthAndSign) {
  for (while4* each : {VecS8While4LESS, VecS16While4LESS, VecS32While4LESS, VecS64While4LESS}) {
    CpuContext ctx = context();
    each(max32 - 1, max32, &ctx);
    EXPECT_EQ(ctx.nzcv, flag_n);
  }
  for (while4* each : {VecU8While4LESS, VecU16While4LESS, VecU32While4LESS, VecU64While4LESS}) {
    CpuContext ctx = context();
    each(umax32 - 1, umax32, &ctx);
    EXPECT_EQ(ctx.nzcv, flag_n);
  }
}

TEST(While, WritesAnElementsLowestBit) {
  CpuContext ctx = context();
  EXPECT_EQ(VecS16While8LTSS(0, 2, &ctx), predicate_of<std::uint16_t>({0, 1}));
  EXPECT_EQ(VecU64While4LTSS(3, 5, &ctx), predicate_of<std::uint64_t>({0, 1}));
  EXPECT_EQ(VecU32While8LESS(3, umax64, &ctx), all_true<std::uint32_t>());
}

TEST(While, OfNoLanesSetsZAndC) {
  CpuContext ctx = context(0);
  EXPECT_EQ(VecS8While8LTSS(0, 5, &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, none_set);
}

// What a loop's termination leaves of these flags.
std::uint32_t flags_after(void (*terminate)(std::uint32_t, std::uint32_t, CpuContext*), std::uint32_t n,
                          std::uint32_t m, std::uint32_t before) {
  CpuContext ctx = context();
  ctx.nzcv = before;
  terminate(n, m, &ctx);
  return ctx.nzcv;
}

TEST(CTerm, SetsNByTheConditionAndVWhereNeitherItNorCHolds) {
  EXPECT_EQ(flags_after(VecU32CTermEQ, 7, 7, flag_v), flag_n);
  EXPECT_EQ(flags_after(VecU32CTermEQ, 7, 8, flag_n), flag_v);
  EXPECT_EQ(flags_after(VecU32CTermEQ, 7, 8, flag_n | flag_c | flag_v), flag_c);
  EXPECT_EQ(flags_after(VecU32CTermNE, 7, 8, flag_v), flag_n);
  EXPECT_EQ(flags_after(VecU32CTermNE, 7, 7, 0), flag_v);  // equal, C clear
  EXPECT_EQ(flags_after(VecU32CTermNE, 7, 7, flag_c), flag_c);
}

TEST(CTerm, LeavesZCAndAllLowerBits) {
  constexpr std::uint32_t others = flag_z | 0x0FFFFFFF;
  EXPECT_EQ(flags_after(VecU32CTermEQ, 7, 7, others | flag_c), others | flag_c | flag_n);
  EXPECT_EQ(flags_after(VecU32CTermNE, 7, 7, others), others | flag_v);
}

TEST(CTerm, ComparesAll64Bits) {
  CpuContext ctx = context();
  VecU64CTermEQ(std::uint64_t{1} << 32, 0, &ctx);
  EXPECT_EQ(ctx.nzcv, flag_v);
  VecU64CTermNE(std::uint64_t{1} << 32, 0, &ctx);
  EXPECT_EQ(ctx.nzcv, flag_n);
}

TEST(SCountP, CountsElementsWhoseLowestBitsAreSetInBoth) {
  CpuContext ctx = context();
  const PredV all_bits = all_true<std::uint8_t>();
  EXPECT_EQ(VecU8SCountP(all_bits, all_bits, &ctx), VL_BYTES);
  EXPECT_EQ(VecU64SCountP(all_bits, all_bits, &ctx), VL_BYTES / 8);
  EXPECT_EQ(VecU16SCountP(predicate_of<std::uint8_t>({0, 1, 2, 5}), all_bits, &ctx), 2);
  EXPECT_EQ(VecU32SCountP(all_bits, predicate_of<std::uint32_t>({1, 3}), &ctx), 2);
  EXPECT_EQ(VecU8SCountP(PredV{}, all_bits, &ctx), 0);
}

}  // namespace
