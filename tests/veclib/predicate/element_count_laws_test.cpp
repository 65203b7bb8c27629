// Every function that adds a count of elements to something, for all its types.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sve/arith/integer/saturation.h"
#include "sve/arith/predicate/predicate_support.h"
#include "sve/veclib/predicate/element_count.h"
#include "tests/harness/elements.h"
#include "tests/veclib/lane_laws.h"

namespace {

using namespace quern;

// What becomes of a value of `width` bits and a count.
using step = std::uint64_t (*)(std::uint64_t value, std::uint64_t count, int width, int is_unsigned);
constexpr step add = [](std::uint64_t value, std::uint64_t count, int, int) { return value + count; };
constexpr step subtract = [](std::uint64_t value, std::uint64_t count, int, int) { return value - count; };
constexpr step saturating_add = [](std::uint64_t value, std::uint64_t count, int width, int u) {
  return SatQ(Int(value, width, u) + count, width, u).value;
};
constexpr step saturating_subtract = [](std::uint64_t value, std::uint64_t count, int width, int u) {
  return SatQ(Int(value, width, u) - count, width, u).value;
};

struct counting_law {
  std::string_view stem;
  step apply;
  int width;  // of the value, or 0 for lanes
};
constexpr counting_law by_pattern[] = {
    {"IncrVLSI", add, 64},
    {"DecrVLSI", subtract, 64},
    {"QIncrVL4SI", saturating_add, 32},
    {"QDecrVL4SI", saturating_subtract, 32},
    {"QIncrVL8SI", saturating_add, 64},
    {"QDecrVL8SI", saturating_subtract, 64},
    {"IncrVLVI", add, 0},
    {"DecrVLVI", subtract, 0},
    {"QIncrVLVI", saturating_add, 0},
    {"QDecrVLVI", saturating_subtract, 0},
};
constexpr counting_law by_predicate[] = {
    {"IncrSCountPS", add, 64},
    {"DecrSCountPS", subtract, 64},
    {"QIncrSCount4PS", saturating_add, 32},
    {"QDecrSCount4PS", saturating_subtract, 32},
    {"QIncrSCount8PS", saturating_add, 64},
    {"QDecrSCount8PS", saturating_subtract, 64},
    {"IncrCountPV", add, 0},
    {"DecrCountPV", subtract, 0},
    {"QIncrCountPV", saturating_add, 0},
    {"QDecrCountPV", saturating_subtract, 0},
};

// Expects of a call that its scalar, or every lane of its vector, is what the law makes of the count.
void judge(const counting_law& law, const library_member& member, const library_operands& operands,
           std::uint64_t count) {
  CpuContext ctx = library_context();
  const library_result result = member(operands, ctx);
  if (law.width != 0) {
    const std::uint64_t value = low_bits(static_cast<unsigned>(law.width), operands.scalars[0]);
    const std::uint64_t expected = law.apply(value, count, law.width, member.is_unsigned());
    ASSERT_EQ(result.scalar, low_bits(static_cast<unsigned>(law.width), expected)) << value << ", " << count;
    return;
  }
  const auto bytes = static_cast<std::size_t>(member.width()) / 8;
  for (std::size_t at = 0; at != VL_BYTES; at += bytes) {
    const std::uint64_t expected =
        law.apply(element_at(operands.vectors[0].bytes + at, bytes), count, member.width(), member.is_unsigned());
    ASSERT_EQ(element_at(result.vector.bytes + at, bytes), low_bits(static_cast<unsigned>(member.width()), expected));
  }
}

// Values around which saturation begins.
std::uint64_t telling_value(std::uint64_t round) {
  const std::uint64_t values[] = {
      0, 5, 0x7FFFFFF0, 0x80000008, 0xFFFFFFF8, 0x7FFFFFFFFFFFFFF0, 0x8000000000000008, ~std::uint64_t{0} - 7};
  return values[round % std::size(values)];
}

TEST(ElementCount, ByPatternMovesValuesForAllTypes) {
  for (const counting_law& law : by_pattern) {
    for (const library_member& member : members_of(law.stem)) {
      SCOPED_TRACE(member.name);
      for (std::uint64_t pattern = 0; pattern != 32; ++pattern) {
        for (const std::uint64_t field : {0, 2, 15}) {
          library_operands operands = random_operands(member.width(), pattern + 32 * field);
          std::uint64_t* scalar = operands.scalars;
          if (law.width != 0) *scalar++ = telling_value(pattern + field);  // functions of a value take it first
          *scalar++ = pattern;
          *scalar = field;
          const auto count = static_cast<std::uint64_t>(VecTrueILength(pattern, VL_BITS / member.width()));
          judge(law, member, operands, count * (field + 1));
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST(ElementCount, ByPredicateMovesValuesForAllTypes) {
  for (const counting_law& law : by_predicate) {
    for (const library_member& member : members_of(law.stem)) {
      SCOPED_TRACE(member.name);
      for (std::uint64_t round = 0; round != 100; ++round) {
        library_operands operands = random_operands(member.width(), round);
        operands.scalars[0] = telling_value(round);
        std::uint64_t count = 0;
        for (int bit = 0; bit < VL_BYTES; bit += member.width() / 8)
          count += operands.predicates[0].words[bit / 64] >> bit % 64 & 1;
        judge(law, member, operands, count);
        if (HasFatalFailure()) return;
      }
    }
  }
}

constexpr PredV all_active() {
  PredV all{};
  for (std::uint64_t& word : all.words) word = ~std::uint64_t{0};
  return all;
}

TEST(ElementCount, OfAPredicateDoesNotShieldItsInactiveLanes) {
  CpuContext ctx = library_context();
  PredV one{};
  one.words[0] = 4;  // element 1 of halfwords
  VecV nines;
  fill_elements(nines.bytes, size_h, 9);
  EXPECT_THAT(read_elements(VecU16DecrCountPV(one, nines, &ctx), size_h), testing::Each(8));
  EXPECT_THAT(read_elements(VecU16DecrCountPV(all_active(), nines, &ctx), size_h),
              testing::Each(static_cast<std::uint16_t>(9 - VL_BYTES / 2)));
}

TEST(ElementCount, SaturatesASignedValueAtItsTop) {
  CpuContext ctx = library_context();
  EXPECT_EQ(VecS8QIncrSCount8PS(all_active(), 0x7FFFFFFFFFFFFFFE, &ctx), 0x7FFFFFFFFFFFFFFFu);
  EXPECT_EQ(VecU8QIncrSCount8PS(all_active(), 0x7FFFFFFFFFFFFFFE, &ctx), std::uint64_t{0x7FFFFFFFFFFFFFFE} + VL_BYTES);
}

}  // namespace
