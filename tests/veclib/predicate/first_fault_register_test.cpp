// The first-fault register, and PTEST.
#include "sve/veclib/predicate/first_fault_register.h"

#include <gtest/gtest.h>

#include "sve/veclib/predicate/predicate_flags.h"
#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

PredV bits(std::initializer_list<std::size_t> numbers) { return predicate_of<std::uint8_t>(numbers); }

TEST(FirstFaultRegister, IsSetByTheFunctionThatSaysClear) {
  CpuContext ctx = context();
  VecPClearFFSR(&ctx);
  EXPECT_EQ(ctx.ffr, all_true<std::uint8_t>());
}

TEST(FirstFaultRegister, IsReadAndWrittenWhole) {
  CpuContext ctx = context();
  const PredV value = bits({0, 1, 5, VL_BYTES - 1});
  VecPWriteFFSRP(value, &ctx);
  EXPECT_EQ(ctx.ffr, value);
  EXPECT_EQ(VecPReadFFSRP(&ctx), value);
  EXPECT_EQ(ctx.nzcv, 0u);
}

TEST(FirstFaultRegister, IsReadUnderAPredicateOnAllBits) {
  CpuContext ctx = context();
  ctx.ffr = bits({1, 2, 3});
  EXPECT_EQ(VecPActualP(bits({2, 3, 4}), &ctx), bits({2, 3}));
  EXPECT_EQ(ctx.nzcv, 0u);
  EXPECT_EQ(VecPActualFlgP(bits({2, 3, 4}), &ctx), bits({2, 3}));
  EXPECT_EQ(ctx.nzcv, flag_n | flag_c);
  EXPECT_EQ(VecPActualFlgP(bits({4}), &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, none_set);
}

TEST(TestPZ, SetsTheFlagsOfAPredicateOfBits) {
  CpuContext ctx = context();
  VecPTestPZ(bits({1, 3}), bits({1}), &ctx);
  EXPECT_EQ(ctx.nzcv, flag_n | flag_c);
  VecPTestPZ(PredV{}, all_true<std::uint8_t>(), &ctx);
  EXPECT_EQ(ctx.nzcv, none_set);
}

}  // namespace
