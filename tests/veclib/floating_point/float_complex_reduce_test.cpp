// Reductions, complex numbers, and the helpers of series and reciprocals.
#include <gtest/gtest.h>

#include "sve/arith/float/fpscr.h"
#include "sve/veclib/floating_point/complex.h"
#include "sve/veclib/floating_point/estimate.h"
#include "sve/veclib/floating_point/float_reduce.h"
#include "sve/veclib/floating_point/trigonometric.h"
#include "tests/veclib/library_values.h"

namespace {

using namespace quern;
using namespace quern::veclib;

using half = std::uint16_t;
using single = std::uint32_t;
using dbl = std::uint64_t;

constexpr single one = 0x3F800000, two = 0x40000000, three = 0x40400000, four = 0x40800000, five = 0x40A00000;
constexpr single six = 0x40C00000, ten = 0x41200000, minus = 0x80000000;
constexpr single signalling = 0x7F800001, quiet = 0x7FC00000, quiet_with_payload = 0x7FC00123;
constexpr single large = 0x4B800000;  // 2^24: adding 1 to it changes nothing
constexpr single infinite = 0x7F800000;
constexpr std::uint32_t round_down = 2u << FPSCR_RMode_shift;

TEST(OrderedSum, WithoutAnActiveLaneIsTheStartUntouched) {
  CpuContext ctx = context();
  EXPECT_EQ(VecF32AddReduceAV(PredV{}, signalling, VecV{}, &ctx), signalling);
  EXPECT_EQ(ctx.fpsr, 0u);
  EXPECT_EQ(VecF32AddReduceAV(predicate_of<single>({3}), signalling, VecV{}, &ctx), quiet | 1);
  EXPECT_EQ(ctx.fpsr, static_cast<unsigned>(IOC));
}

TEST(OrderedSum, AddsFromLane0Up) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({one, one, large | minus, one});
  EXPECT_EQ(VecF32AddReduceAV(predicate_of<single>({0, 1, 2, 3}), large, a, &ctx), one);  // the first two are lost
}

TEST(TreeSum, CombinesNeighbours) {
  CpuContext ctx = context();
  const PredV four_lanes = predicate_of<single>({0, 1, 2, 3});
  // L + 1 is L: so (1 + 1) + (L + 1) is L + 2. One by one, L + 2 and 1 would be rounded up to L + 4.
  EXPECT_EQ(VecF32AddReduceFV(four_lanes, vector_of<single>({one, one, large, one}), &ctx), large + 1);
  // (L + 1) + (-L + 1) is 1. The halves of the vector, L with -L and 1 with 1, would give 2.
  EXPECT_EQ(VecF32AddReduceFV(four_lanes, vector_of<single>({large, one, large | minus, one}), &ctx), one);
}

TEST(TreeSum, OfNothingIsPlusZeroInEveryMode) {
  CpuContext ctx = controlled(round_down);
  EXPECT_EQ(VecF32AddReduceFV(PredV{}, VecV{}, &ctx), 0u);
  EXPECT_EQ(VecF16AddReduceFV(PredV{}, VecV{}, &ctx), 0u);
  EXPECT_EQ(VecD64AddReduceFV(PredV{}, VecV{}, &ctx), 0u);
}

TEST(TreeExtremes, OfNothingAreTheirIdentities) {
  CpuContext ctx = context();
  EXPECT_EQ(VecF16MaxReduceFV(PredV{}, VecV{}, &ctx), 0xFC00);
  EXPECT_EQ(VecF32MinReduceFV(PredV{}, VecV{}, &ctx), infinite);
  EXPECT_EQ(VecD64MaxNumReduceFV(PredV{}, VecV{}, &ctx), 0x7FF8000000000000);
  EXPECT_EQ(VecF32MinNumReduceFV(PredV{}, VecV{}, &ctx), quiet);
  EXPECT_EQ(ctx.fpsr, 0u);
}

TEST(TreeExtremes, KeepAQuietNanOfLane0ButNotOfLane1) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({quiet_with_payload, quiet_with_payload});
  EXPECT_EQ(VecF32MaxNumReduceFV(predicate_of<single>({0}), a, &ctx), quiet_with_payload);
  EXPECT_EQ(VecF32MaxNumReduceFV(predicate_of<single>({1}), a, &ctx), quiet);
}

TEST(TreeExtremes, SeeInactiveLanesAsTheIdentity) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({one, three | minus, five | minus});
  EXPECT_EQ(VecF32MinReduceFV(predicate_of<single>({1}), a, &ctx), three | minus);
  EXPECT_EQ(VecF32MaxReduceFV(predicate_of<single>({1, 2}), a, &ctx), three | minus);
  EXPECT_EQ(VecF32MaxNumReduceFV(predicate_of<single>({1, 2}), a, &ctx), three | minus);
}

// 1 + 2i and, to be added, 3 + 4i.
TEST(ComplexAdd, TurnsByOneQuarterOrThree) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({one, two}), b = vector_of<single>({three, four});
  const PredV both = predicate_of<single>({0, 1});
  EXPECT_EQ(first_lanes<single>(VecF32FCADDVVM(a, both, b, 0, &ctx), 2), (std::vector{three | minus, five}));
  EXPECT_EQ(first_lanes<single>(VecF32FCADDVVM(a, both, b, 1, &ctx), 2), (std::vector{five, one | minus}));
}

TEST(ComplexAdd, KeepsAnEvenLaneThatIsNotActive) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({one, two}), b = vector_of<single>({signalling, signalling});
  EXPECT_EQ(first_lanes<single>(VecF32FCADDVVM(a, predicate_of<single>({1}), b, 0, &ctx), 2),
            (std::vector{one, signalling | 0x00400000}));
}

struct turn {
  std::uint32_t rotation;
  single real, imaginary;
};
// 1 + 2i, and what each turn adds of (1 + 3i) * (2 + 4i).
constexpr turn turns[] = {
    {0, three, six},                      // 1 + 1 * 2, 2 + 1 * 4
    {1, 0x41300000 | minus, 0x41000000},  // 1 - 3 * 4, 2 + 3 * 2
    {2, one | minus, two | minus},        // 1 - 1 * 2, 2 - 1 * 4
    {3, 0x41500000, four | minus},        // 1 + 3 * 4, 2 - 3 * 2
};
TEST(ComplexMultiplyAdd, TakesThePartsOfItsRotation) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({one, two}), n = vector_of<single>({one, three}), m = vector_of<single>({two, four});
  for (const turn& each : turns) {
    const VecV got = VecF32FCMLAVVVM(a, predicate_of<single>({0, 1}), n, m, each.rotation, &ctx);
    EXPECT_EQ(first_lanes<single>(got, 2), (std::vector{each.real, each.imaginary})) << each.rotation;
    const VecV odd = VecF32FCMLAVVVM(a, predicate_of<single>({1}), n, m, each.rotation, &ctx);
    EXPECT_EQ(first_lanes<single>(odd, 2), (std::vector{one, each.imaginary})) << each.rotation;
  }
}

TEST(ComplexMultiplyAdd, ByAnIndexTakesAPairOfItsSegment) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({one, two, one, two}), n = vector_of<single>({one, three, one, three});
  const VecV m = vector_of<single>({0, 0, two, four});
  for (const turn& each : turns) {
    const VecV got = VecF32FCMLAVVVIX(n, m, a, each.rotation, 1, &ctx);
    EXPECT_EQ(first_lanes<single>(got, 4), (std::vector{each.real, each.imaginary, each.real, each.imaginary}));
  }
  const VecV halves = vector_of<half>({0, 0, 0, 0, 0, 0, 0x4000, 0x4400});
  const VecV ones = vector_of<half>({0x3C00, 0, 0x3C00});
  EXPECT_EQ(first_lanes<half>(VecF16FCMLAVVVIX(ones, halves, VecV{}, 0, 3, &ctx), 4),
            (std::vector<half>{0x4000, 0x4400, 0x4000, 0x4400}));
}

TEST(ComplexMultiplyAdd, ByHalfATurnSubtractsWithOneRounding) {
  CpuContext ctx = context();
  const single x = 0x3F800001;  // 1 + u
  const VecV a = vector_of<single>({0x3F800002}), n = vector_of<single>({x}), m = vector_of<single>({x});
  // 1 + 2u less (1 + u) squared is -u squared, which a rounded product would lose.
  EXPECT_EQ(first_lanes<single>(VecF32FCMLAVVVM(a, predicate_of<single>({0}), n, m, 2, &ctx), 1)[0], 0xA8800000);
}

TEST(TrigonometricSelect, ChoosesOneOrTheValueAndItsSign) {
  CpuContext ctx = context();
  const VecV a = vector_of<single>({two, two, signalling, two});
  const VecV b = vector_of<single>({0, 1, 2, 3});
  EXPECT_EQ(first_lanes<single>(VecF32TRISSELVV(a, b, &ctx), 4),
            (std::vector{two, one, signalling | minus, one | minus}));
  EXPECT_EQ(ctx.fpsr, 0u);
  EXPECT_EQ(lane<half>(VecF16TRISSELVV(VecV{}, vector_of<half>({3}), &ctx).bytes, 0), 0xBC00);
  EXPECT_EQ(lane<dbl>(VecD64TRISSELVV(VecV{}, vector_of<dbl>({1}), &ctx).bytes, 0), 0x3FF0000000000000);
}

// One value of each helper; their arithmetic has tests of its own.
TEST(Helpers, ReachEveryLane) {
  CpuContext ctx = context();
  VecV twos{};
  for (std::size_t i = 0; i != lane_count<single>; ++i) set_lane(twos.bytes, i, two);
  const std::size_t last = lane_count<single> - 1;
  const auto lane_of = [&](const VecV& result) { return lane<single>(result.bytes, last); };
  EXPECT_EQ(lane_of(VecF32RecpEV(twos, &ctx)), 0x3EFF8000u);
  EXPECT_EQ(lane_of(VecF32RSqrtEV(twos, &ctx)), 0x3F348000u);
  EXPECT_EQ(lane_of(VecF32RecpSVV(twos, twos, &ctx)), two | minus);
  EXPECT_EQ(lane_of(VecF32RSqrtSVV(twos, twos, &ctx)), 0xBF000000);
  EXPECT_EQ(lane_of(VecF32TRISMULVV(twos, twos, &ctx)), four);
  EXPECT_EQ(lane_of(VecF32TRIMADDVVI(twos, twos, 0, &ctx)), five);
  EXPECT_EQ(lane_of(VecF32EXPAV(VecV{}, &ctx)), 0u);
  EXPECT_EQ(lane_of(VecF32RecpXVM(VecV{}, predicate_of<single>({last}), twos, &ctx)), one);
}

}  // namespace
