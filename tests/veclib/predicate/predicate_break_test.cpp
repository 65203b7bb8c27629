// Breaks, and first and next elements.
#include "sve/veclib/predicate/predicate_break.h"

#include <gtest/gtest.h>

#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;
using bit = std::uint8_t;

constexpr std::uint32_t all_flags = 0xF0000000;

PredV bits(std::initializer_list<std::size_t> numbers) { return predicate_of<bit>(numbers); }

// The definition: a walk over the bits, `after` telling whether the breaking bit is set too.
PredV by_definition(const PredV& inactive, const PredV& pg, const PredV& pn, bool after) {
  PredV result{};
  bool broken = false;
  for (std::size_t i = 0; i != VL_BYTES; ++i) {
    bool value = is_active<bit>(inactive, i);
    if (is_active<bit>(pg, i)) {
      const bool was_broken = broken;
      broken = broken || is_active<bit>(pn, i);
      value = after ? !was_broken : !broken;
    }
    set_element<bit>(result, i, value);
  }
  return result;
}

std::uint32_t flags_of(const PredV& mask, const PredV& result) {
  CpuContext ctx = context();
  PredSetNZCV(mask, result, 8, &ctx);
  return ctx.nzcv;
}

TEST(BreakPZ, GoesToTheFirstActiveBreakWithItOrWithout) {
  std::mt19937_64 random(1);
  for (int round = 0; round != 200; ++round) {
    const PredV pg = random_predicate(random), old = random_predicate(random);
    const PredV pn = round % 4 == 0 ? PredV{} : sparse_predicate(random) & sparse_predicate(random);
    const PredV after = by_definition(PredV{}, pg, pn, true), before = by_definition(PredV{}, pg, pn, false);
    CpuContext ctx = context();
    ctx.nzcv = all_flags;
    EXPECT_EQ(VecPBreakAPZ(pg, pn, &ctx), after);
    EXPECT_EQ(VecPBreakBPZ(pg, pn, &ctx), before);
    EXPECT_EQ(VecPBreakAPM(old, pg, pn, &ctx), by_definition(old, pg, pn, true));
    EXPECT_EQ(VecPBreakBPM(old, pg, pn, &ctx), by_definition(old, pg, pn, false));
    EXPECT_EQ(ctx.nzcv, all_flags);
    EXPECT_EQ(VecPBreakAFlgPZ(pg, pn, &ctx), after);
    EXPECT_EQ(ctx.nzcv, flags_of(pg, after));
    EXPECT_EQ(VecPBreakBFlgPZ(pg, pn, &ctx), before);
    EXPECT_EQ(ctx.nzcv, flags_of(pg, before));
  }
}

TEST(BreakAFlgPZ, OfNoActiveBitIsNothingWithZAndC) {
  CpuContext ctx = context();
  ctx.nzcv = all_flags;
  EXPECT_EQ(VecPBreakAFlgPZ(PredV{}, all_true<bit>(), &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, none_set);
}

TEST(BreakNextPZ, KeepsItsDestinationWhereTheLastActiveBitIsSet) {
  CpuContext ctx = context();
  ctx.nzcv = all_flags;
  const PredV pg = bits({1, 5}), pdm = bits({0, 2, 7});
  EXPECT_EQ(VecPBreakNextPZ(pg, bits({5}), pdm, &ctx), pdm);
  EXPECT_EQ(VecPBreakNextPZ(pg, bits({1, 6}), pdm, &ctx), PredV{});
  EXPECT_EQ(VecPBreakNextPZ(PredV{}, all_true<bit>(), pdm, &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, all_flags);
}

TEST(BreakNextFlgPZ, TakesFlagsFromTheWholeResultWhateverIsActive) {
  CpuContext ctx = context();
  const PredV only_bit_5 = bits({5}), pdm = bits({0, 2});
  EXPECT_EQ(VecPBreakNextFlgPZ(only_bit_5, only_bit_5, pdm, &ctx), pdm);
  EXPECT_EQ(ctx.nzcv, flag_n | flag_c);  // bit 0 is set and the top bit is not, though neither is active
  VecPBreakNextFlgPZ(only_bit_5, only_bit_5, all_true<bit>(), &ctx);
  EXPECT_EQ(ctx.nzcv, flag_n);
  VecPBreakNextFlgPZ(only_bit_5, PredV{}, all_true<bit>(), &ctx);
  EXPECT_EQ(ctx.nzcv, none_set);
}

TEST(BreakPrevPZ, BreaksOnlyWhereTheLastActiveBitOfThePreviousIsSet) {
  std::mt19937_64 random(2);
  for (int round = 0; round != 200; ++round) {
    const PredV pg = random_predicate(random), pm = sparse_predicate(random) & sparse_predicate(random);
    const PredV pn = random_predicate(random);
    CpuContext ctx = context();
    const int last = FindLastActive(pg, 8, &ctx);
    const bool goes_on = last >= 0 && is_active<bit>(pn, static_cast<std::size_t>(last));
    const PredV after = goes_on ? by_definition(PredV{}, pg, pm, true) : PredV{};
    const PredV before = goes_on ? by_definition(PredV{}, pg, pm, false) : PredV{};
    ctx.nzcv = all_flags;
    EXPECT_EQ(VecPBreakPrevAPZ(pg, pn, pm, &ctx), after);
    EXPECT_EQ(VecPBreakPrevBPZ(pg, pn, pm, &ctx), before);
    EXPECT_EQ(ctx.nzcv, all_flags);
    EXPECT_EQ(VecPBreakPrevAFlgPZ(pg, pn, pm, &ctx), after);
    EXPECT_EQ(ctx.nzcv, flags_of(pg, after));
    EXPECT_EQ(VecPBreakPrevBFlgPZ(pg, pn, pm, &ctx), before);
    EXPECT_EQ(ctx.nzcv, flags_of(pg, before));
  }
}

TEST(BreakPrevPZ, OfNoActiveBitIsNothing) {
  CpuContext ctx = context();
  EXPECT_EQ(VecPBreakPrevAPZ(PredV{}, all_true<bit>(), PredV{}, &ctx), PredV{});
  EXPECT_EQ(VecPBreakPrevBFlgPZ(PredV{}, all_true<bit>(), PredV{}, &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, none_set);
}

TEST(SetFirstActiveP, AddsTheFirstActiveBitAndSetsFlagsUnderTheActiveOnes) {
  CpuContext ctx = context();
  EXPECT_EQ(VecPSetFirstActiveP(bits({3, 9}), bits({1}), &ctx), bits({1, 3}));
  EXPECT_EQ(ctx.nzcv, flag_n | flag_c);
  EXPECT_EQ(VecPSetFirstActiveP(bits({VL_BYTES - 1}), PredV{}, &ctx), bits({VL_BYTES - 1}));
  EXPECT_EQ(ctx.nzcv, flag_n);
  EXPECT_EQ(VecPSetFirstActiveP(PredV{}, bits({1}), &ctx), bits({1}));
  EXPECT_EQ(ctx.nzcv, none_set);
}

template <class T>
class GenNextP : public testing::Test {};
using element_types = testing::Types<std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t>;
TYPED_TEST_SUITE(GenNextP, element_types);

template <class T>
PredV next_of(const PredV& pg, const PredV& pdn, CpuContext* ctx) {
  constexpr decltype(VecP8GenNextP)* functions[] = {VecP8GenNextP, VecP16GenNextP, VecP32GenNextP, VecP64GenNextP};
  return functions[quern::size_code<T>](pg, pdn, ctx);
}

TYPED_TEST(GenNextP, IsTheFirstActiveElementAboveTheLastSetOneActiveOrNot) {
  constexpr std::size_t top = quern::lane_count<TypeParam> - 1;
  const auto elements = [](auto... numbers) { return predicate_of<TypeParam>({numbers...}); };
  CpuContext ctx = context();
  EXPECT_EQ(next_of<TypeParam>(elements(std::size_t{0}, top), PredV{}, &ctx), elements(std::size_t{0}));
  EXPECT_EQ(ctx.nzcv, flag_n | flag_c);
  EXPECT_EQ(next_of<TypeParam>(elements(std::size_t{0}, top), elements(std::size_t{0}), &ctx), elements(top));
  EXPECT_EQ(ctx.nzcv, 0u);
  EXPECT_EQ(next_of<TypeParam>(elements(top), elements(std::size_t{0}), &ctx), elements(top));  // 0 is inactive
  EXPECT_EQ(next_of<TypeParam>(elements(std::size_t{0}), elements(std::size_t{0}), &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, none_set);
  EXPECT_EQ(next_of<TypeParam>(all_true<TypeParam>(), elements(top), &ctx), PredV{});
}

TEST(GenNextP16, LooksAtTheLowestBitsAlone) {
  CpuContext ctx = context();
  EXPECT_EQ(VecP16GenNextP(bits({1, 2, 3}), bits({5}), &ctx), bits({2}));
}

}  // namespace
