// Single cases of the integer families that are easily got wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sve/veclib/integer/address.h"
#include "sve/veclib/integer/integer_arithmetic.h"
#include "sve/veclib/integer/integer_unary.h"
#include "sve/veclib/integer/shift.h"
#include "tests/harness/elements.h"
#include "tests/veclib/library_members.h"

namespace {

using namespace quern;

struct integer_edge : testing::Test {
  integer_edge() {
    for (std::uint64_t& word : all.words) word = ~std::uint64_t{0};
  }
  // A vector of one value.
  static VecV every(std::uint32_t size, std::uint64_t value) {
    VecV vector;
    fill_elements(vector.bytes, size, value);
    return vector;
  }
  static std::uint64_t first(const VecV& vector, std::uint32_t size) { return element(vector.bytes, size, 0); }

  CpuContext ctx = library_context();
  PredV all;
  VecV none = every(size_b, 0);
};
using IntegerEdge = integer_edge;

TEST_F(IntegerEdge, AbsOfTheLeastByteIsItself) {
  EXPECT_EQ(first(VecS8AbsVM(none, all, every(size_b, 0x80), &ctx), size_b), 0x80u);
}

TEST_F(IntegerEdge, SumsSaturateUnsignedAndDifferencesSigned) {
  EXPECT_EQ(first(VecU8QAddVVX(every(size_b, 200), every(size_b, 100), &ctx), size_b), 255u);
  EXPECT_EQ(first(VecS8QSubVVX(every(size_b, 0x9C), every(size_b, 100), &ctx), size_b), 0x80u);
}

TEST_F(IntegerEdge, DivisionByAPowerOf2IsTowardsZero) {
  EXPECT_EQ(first(VecS8ShrDVIM(every(size_b, 0xF9), all, 2, &ctx), size_b), 0xFFu);  // -7 / 4
  EXPECT_EQ(first(VecS8ShrVIM(every(size_b, 0xF9), all, 2, &ctx), size_b), 0xFEu);
}

TEST_F(IntegerEdge, NotIsLogicalAndInvIsBitwise) {
  EXPECT_EQ(first(VecU8NotVM(none, all, every(size_b, 0), &ctx), size_b), 1u);
  EXPECT_EQ(first(VecU8NotVM(none, all, every(size_b, 7), &ctx), size_b), 0u);
  EXPECT_EQ(first(VecU8InvVM(none, all, every(size_b, 0), &ctx), size_b), 255u);
}

TEST_F(IntegerEdge, WideShiftBeyondTheLaneLeavesNothing) {
  for (const std::uint64_t count : {std::uint64_t{8}, std::uint64_t{9}, std::uint64_t{256}, ~std::uint64_t{0}}) {
    EXPECT_EQ(first(VecU8ShlVWM(every(size_b, 0xFF), all, every(size_d, count), &ctx), size_b), 0u) << count;
    EXPECT_EQ(first(VecS8ShrVWM(every(size_b, 0x80), all, every(size_d, count), &ctx), size_b), 0xFFu) << count;
  }
  EXPECT_EQ(first(VecU8ShlVWM(every(size_b, 0xFF), all, every(size_d, 7), &ctx), size_b), 0x80u);
}

TEST_F(IntegerEdge, AddressOfAnUnsignedWordIgnoresTheLanesUpperHalf) {
  const VecV m = every(size_d, 0xDEADBEEF80000001);
  EXPECT_EQ(first(VecU64LEA2YVV(every(size_d, 3), m, &ctx), size_d), 3 + 2 * std::uint64_t{0x80000001});
  EXPECT_EQ(first(VecU64LEA2XVV(every(size_d, 3), m, &ctx), size_d), 3 + 2 * 0xFFFFFFFF80000001);
}

TEST_F(IntegerEdge, AllActiveIsAsUnpredicated) {
  const VecV a = every(size_h, 0x1234), b = every(size_h, 0xF00F);
  EXPECT_THAT(VecU16AddVVM(a, all, b, &ctx).bytes, testing::ElementsAreArray(VecU16AddVVX(a, b, &ctx).bytes));
  EXPECT_THAT(VecU16AddVVM(a, all, b, &ctx).bytes, testing::ElementsAreArray(every(size_h, 0x0243).bytes));
}

}  // namespace
