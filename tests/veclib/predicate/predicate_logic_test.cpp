// Logic on predicates, bit by bit.
#include "sve/veclib/predicate/predicate_logic.h"

#include <gtest/gtest.h>

#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

using logic = PredV(PredV, PredV, PredV, CpuContext*);

struct operation {
  const char* name;
  logic* plain;
  logic* flag_setting;
  bool (*active_bit)(bool n, bool m);
};

const operation operations[] = {
    {"And", VecPAndPPZ, VecPAndFlgPPZ, [](bool n, bool m) { return n && m; }},
    {"Bic", VecPBicPPZ, VecPBicFlgPPZ, [](bool n, bool m) { return n && !m; }},
    {"Or", VecPOrPPZ, VecPOrFlgPPZ, [](bool n, bool m) { return n || m; }},
    {"OrN", VecPOrNPPZ, VecPOrNFlgPPZ, [](bool n, bool m) { return n || !m; }},
    {"Nor", VecPNorPPZ, VecPNorFlgPPZ, [](bool n, bool m) { return !(n || m); }},
    {"Nand", VecPNandPPZ, VecPNandFlgPPZ, [](bool n, bool m) { return !(n && m); }},
    {"Xor", VecPXorPPZ, VecPXorFlgPPZ, [](bool n, bool m) { return n != m; }},
};

constexpr std::uint32_t all_flags = 0xF0000000;

class PredicateLogic : public testing::TestWithParam<operation> {};

INSTANTIATE_TEST_SUITE_P(, PredicateLogic, testing::ValuesIn(operations),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(PredicateLogic, HasTheOperationInActiveBitsAnd0Elsewhere) {
  std::mt19937_64 random(1);
  for (int round = 0; round != 50; ++round) {
    const PredV pg = random_predicate(random), pn = random_predicate(random), pm = random_predicate(random);
    PredV expected{};
    for (std::size_t i = 0; i != VL_BYTES; ++i)
      set_element<std::uint8_t>(
          expected, i,
          is_active<std::uint8_t>(pg, i) &&
              GetParam().active_bit(is_active<std::uint8_t>(pn, i), is_active<std::uint8_t>(pm, i)));
    CpuContext ctx = context(), flagged_ctx = context();
    ctx.nzcv = flagged_ctx.nzcv = all_flags;
    EXPECT_EQ(GetParam().plain(pg, pn, pm, &ctx), expected);
    EXPECT_EQ(ctx.nzcv, all_flags);
    EXPECT_EQ(GetParam().flag_setting(pg, pn, pm, &flagged_ctx), expected);
    CpuContext tested = context();
    PredSetNZCV(pg, expected, 8, &tested);
    EXPECT_EQ(flagged_ctx.nzcv, tested.nzcv);
  }
}

TEST_P(PredicateLogic, OfNoActiveBitSetsZAndC) {
  CpuContext ctx = context();
  ctx.nzcv = all_flags;
  EXPECT_EQ(GetParam().flag_setting(PredV{}, all_true<std::uint8_t>(), PredV{}, &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, none_set);
}

TEST_P(PredicateLogic, OfNoLanesSetsZAndC) {
  CpuContext ctx = context(0);
  const PredV all = all_true<std::uint8_t>();
  EXPECT_EQ(GetParam().flag_setting(all, all, PredV{}, &ctx), PredV{});
  EXPECT_EQ(ctx.nzcv, none_set);
}

TEST(SelPP, TakesTheFirstSourceWhereActiveAndTheSecondElsewhere) {
  CpuContext ctx = context();
  const PredV even = predicate_of<std::uint8_t>({0, 2, 4, 6}), low = predicate_of<std::uint8_t>({0, 1, 2, 3});
  const PredV high = predicate_of<std::uint8_t>({4, 5, 6, 7});
  EXPECT_EQ(VecPSelPP(even, low, high, &ctx), predicate_of<std::uint8_t>({0, 2, 5, 7}));
  EXPECT_EQ(ctx.nzcv, 0u);
}

}  // namespace
