// Every family of integer comparisons, for all its types, with the flags it sets.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sve/arith/predicate/predicate_support.h"
#include "sve/veclib/integer/integer_compare.h"
#include "tests/harness/elements.h"
#include "tests/veclib/lane_laws.h"

namespace {

using namespace quern;

// A family's relation, and its second operand: Zm's lane, the immediate, or the doubleword around the lane.
struct comparison {
  std::string_view relation;
  bool (*holds)(int128 a, int128 b);
};
constexpr comparison relations[] = {
    {"EQ", [](int128 a, int128 b) { return a == b; }}, {"NE", [](int128 a, int128 b) { return a != b; }},
    {"GE", [](int128 a, int128 b) { return a >= b; }}, {"GT", [](int128 a, int128 b) { return a > b; }},
    {"LE", [](int128 a, int128 b) { return a <= b; }}, {"LT", [](int128 a, int128 b) { return a < b; }},
};

int128 second_operand(const library_member& member, const library_operands& operands, std::size_t i) {
  const auto bytes = static_cast<std::size_t>(member.width()) / 8;
  const unsigned char* const b = operands.vectors[1].bytes;
  if (member.stem.ends_with("VVZ")) return Int(element_at(b + i * bytes, bytes), member.width(), member.is_unsigned());
  if (member.stem.ends_with("VIZ")) return Int(operands.scalars[0], member.width(), member.is_unsigned());
  return Int(element_at(b + i * bytes / 8 * 8, 8), 64, member.is_unsigned());
}

void judge(const library_member& member, const comparison& relation, const library_operands& operands) {
  const auto bytes = static_cast<std::size_t>(member.width()) / 8;
  PredV expected{};
  for (std::size_t i = 0; i != VL_BYTES / bytes; ++i) {
    if ((operands.predicates[0].words[i * bytes / 64] >> i * bytes % 64 & 1) == 0) continue;
    const int128 a =
        Int(element_at(operands.vectors[0].bytes + i * bytes, bytes), member.width(), member.is_unsigned());
    if (relation.holds(a, second_operand(member, operands, i)))
      expected.words[i * bytes / 64] |= std::uint64_t{1} << i * bytes % 64;
  }
  CpuContext ctx = library_context(), flags = ctx;
  ctx.nzcv = flags.nzcv = 0x1000000F | static_cast<std::uint32_t>(operands.scalars[1] & 0xF0000000);
  PredSetNZCV(operands.predicates[0], expected, member.width(), &flags);
  ASSERT_THAT(member(operands, ctx).predicate.words, testing::ElementsAreArray(expected.words));
  ASSERT_EQ(ctx.nzcv, flags.nzcv);
}

TEST(IntegerCompare, FollowsItsRelationForAllTypes) {
  int judged = 0;
  for (const library_member& member : library_members()) {
    for (const comparison& relation : relations) {
      if (!member.stem.starts_with("CmpFlg" + std::string{relation.relation})) continue;
      SCOPED_TRACE(member.name);
      ++judged;
      for (std::uint64_t round = 0; round != 200; ++round) {
        library_operands operands = random_operands(member.width(), round);
        if (round % 3 == 0) operands.scalars[0] = operands.vectors[0].bytes[0];
        if (round % 8 == 0) operands.predicates[0] = {};
        judge(member, relation, operands);
        if (HasFatalFailure()) return;
      }
    }
  }
  EXPECT_EQ(judged, 2 * 4 + 2 * 8 + 2 * 4 + 4 * 8 + 2 * 3 + 4 * 6);
}

TEST(IntegerCompare, LeavesUpperBitsOfElementsClear) {
  CpuContext ctx = library_context();
  PredV all;
  for (std::uint64_t& word : all.words) word = ~std::uint64_t{0};
  const PredV result = VecS32CmpFlgEQVVZ(all, VecV{}, VecV{}, &ctx);
  for (std::size_t bit = 0; bit != VL_BYTES; ++bit)
    EXPECT_EQ(result.words[bit / 64] >> bit % 64 & 1, bit % 4 == 0 ? 1u : 0u) << bit;
}

}  // namespace
