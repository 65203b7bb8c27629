// Saturation at the bounds of a width, and what saturating arithmetic leaves above it.
#include "sve/arith/integer/saturation.h"

#include <gtest/gtest.h>

// What a failure shows of a result.
static void PrintTo(const SatResult& result, std::ostream* out) {
  *out << std::hex << result.value << (result.saturated != 0 ? " saturated" : "");
}

namespace {

constexpr std::uint64_t all_ones = ~std::uint64_t{0};
constexpr int128 two_to(int n) { return static_cast<int128>(quern::power_of_two(n)); }

struct saturation_case {
  int128 i;
  int N, is_unsigned;
  SatResult expected;
};

template <std::size_t Count>
void expect(SatResult (*saturate)(int128, int, int), const saturation_case (&cases)[Count]) {
  for (const auto& c : cases)
    EXPECT_EQ(saturate(c.i, c.N, c.is_unsigned), c.expected)
        << bits(c.i) << " to " << c.N << (c.is_unsigned ? "u" : "s");
}

TEST(Ones, Of0AndOf64AreAllOnes) {
  EXPECT_EQ(ones(0), all_ones);
  EXPECT_EQ(ones(64), all_ones);
  EXPECT_EQ(ones(1), 1u);
  EXPECT_EQ(ones(63), all_ones >> 1);
}

TEST(SatQ, KeepsTheBoundsAndClampsOnePastThem) {
  static constexpr saturation_case cases[] = {
      {127, 8, 0, {127, 0}},
      {128, 8, 0, {127, 1}},
      {-128, 8, 0, {0x80, 0}},
      {-129, 8, 0, {0x80, 1}},
      {-1, 8, 0, {0xFF, 0}},
      {255, 8, 1, {255, 0}},
      {256, 8, 1, {255, 1}},
      {0, 8, 1, {0, 0}},
      {-1, 8, 1, {0, 1}},
      {two_to(63) - 1, 64, 0, {all_ones >> 1, 0}},
      {two_to(63), 64, 0, {all_ones >> 1, 1}},
      {-two_to(63), 64, 0, {std::uint64_t{1} << 63, 0}},
      {-two_to(63) - 1, 64, 0, {std::uint64_t{1} << 63, 1}},
      {two_to(64) - 1, 64, 1, {all_ones, 0}},
      {two_to(64), 64, 1, {all_ones, 1}},
      {5, 0, 1, {all_ones, 1}},  // no bits: all of them are ones
  };
  expect(SatQ, cases);
}

TEST(SatQShift, LeavesValuesWhole) {
  static constexpr saturation_case cases[] = {
      {-1, 8, 0, {all_ones, 0}},
      {-129, 8, 0, {all_ones - 127, 1}},
      {128, 8, 0, {127, 1}},
      {127, 8, 0, {127, 0}},
      {-1, 8, 1, {0, 1}},
      {255, 8, 1, {255, 0}},
      {256, 8, 1, {255, 1}},
      {two_to(64), 65, 1, {0, 0}},
      {two_to(65), 65, 1, {all_ones, 1}},
      {two_to(100), 100, 0, {all_ones, 1}},
      {-two_to(100), 100, 0, {0, 1}},
  };
  expect(SatQShift, cases);
}

TEST(SatQUShift, AsksTheLowWordFirst) {
  EXPECT_EQ(SatQUShift(255, 8), (SatResult{255, 0}));
  EXPECT_EQ(SatQUShift(two_to(64) + 7, 8), (SatResult{7, 0}));
  EXPECT_EQ(SatQUShift(256, 8), (SatResult{255, 1}));
  EXPECT_EQ(SatQUShift(0xFFFF, 8), (SatResult{255, 1}));
  EXPECT_EQ(SatQUShift(0x10000, 8), (SatResult{0, 1}));
  EXPECT_EQ(SatQUShift(-1, 8), (SatResult{0, 1}));
}

TEST(SatQBigInt, Saturates256BitsAsSatQDoes128) {
  for (const int128 i : {int128{127}, int128{128}, int128{-128}, int128{-129}, two_to(64), -two_to(126)})
    for (const int is_unsigned : {0, 1})
      EXPECT_EQ(SatQBigInt(toBigInt(i), 8, is_unsigned), SatQ(i, 8, is_unsigned)) << bits(i);
  EXPECT_EQ(SatQBigInt({{5, 0, 1, 0}}, 8, 0), (SatResult{127, 1}));
  EXPECT_EQ(SatQBigInt({{5, 0, 0, all_ones}}, 8, 0), (SatResult{0x80, 1}));
  EXPECT_EQ(SatQBigInt({{5, 0, 0, 1}}, 8, 1), (SatResult{255, 1}));
  EXPECT_EQ(SatQBigInt({{5, 0, 0, all_ones}}, 8, 1), (SatResult{0, 1}));
  EXPECT_EQ(SatQBigInt({{0, std::uint64_t{1} << 63, 0, 0}}, 8, 0), (SatResult{127, 1}));
}

TEST(ShiftQLeftInt, SaturatesWhatIsShiftedOut) {
  static constexpr struct {
    int128 a, n;
    int size, is_unsigned;
    SatResult expected;
  } cases[] = {
      {-256, -4, 8, 0, {all_ones - 15, 0}},  // shifted right, and not saturated
      {0, 8, 8, 0, {0, 0}},
      {1, 8, 8, 1, {0xFF, 1}},
      {1, 8, 8, 0, {0x7F, 1}},
      {-1, 9, 8, 0, {all_ones - 127, 1}},
      {-1, 7, 8, 0, {all_ones - 127, 0}},
      {1, 7, 8, 0, {0x7F, 1}},
      {1, 7, 8, 1, {0x80, 0}},
      {3, 7, 8, 1, {0xFF, 1}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ShiftQLeftInt(c.a, c.n, c.size, c.is_unsigned), c.expected) << bits(c.a) << " << " << bits(c.n);
}

struct operation_case {
  std::uint64_t a, b;
  int size, is_unsigned;
  SatResult expected;
};

template <std::size_t Count>
void expect(SatResult (*operation)(std::uint64_t, std::uint64_t, int, int), const operation_case (&cases)[Count]) {
  for (const auto& c : cases)
    EXPECT_EQ(operation(c.a, c.b, c.size, c.is_unsigned), c.expected) << c.a << ", " << c.b << " in " << c.size;
}

TEST(SatAdd, LeavesASumInRangeUncut) {
  static constexpr operation_case cases[] = {
      {0xFF, 0, 8, 0, {all_ones, 0}},      {0x7F, 1, 8, 0, {0x7F, 1}},   {0x80, 0xFF, 8, 0, {0x80, 1}},
      {200, 100, 8, 1, {255, 1}},          {200, 55, 8, 1, {255, 0}},    {all_ones >> 1, 1, 64, 0, {all_ones >> 1, 1}},
      {all_ones, 1, 64, 1, {all_ones, 1}}, {0x1FF, 0x101, 8, 0, {0, 0}},  // the low 8 bits of either
  };
  expect(SatAdd, cases);
}

TEST(SatSub, CutsItsValueToTheSize) {
  static constexpr operation_case cases[] = {
      {0xFF, 0, 8, 0, {0xFF, 0}}, {0x80, 1, 8, 0, {0x80, 1}}, {0x7F, 0xFF, 8, 0, {0x7F, 1}},
      {100, 200, 8, 1, {0, 1}},   {200, 100, 8, 1, {100, 0}}, {0, 1, 64, 1, {0, 1}},
  };
  expect(SatSub, cases);
}

TEST(SatMult, NeverGivesTheSaturatedValue) {
  static constexpr operation_case cases[] = {
      {16, 16, 8, 1, {256, 1}},
      {15, 17, 8, 1, {255, 0}},
      {0x80, 0xFF, 8, 0, {128, 1}},
      {0xFF, 0x80, 8, 1, {0x7F80, 1}},
      {all_ones, all_ones, 64, 1, {1, 1}},
      {all_ones, all_ones, 64, 0, {1, 0}},
  };
  expect(SatMult, cases);
}

TEST(SatShiftLeft, SaturatesToItsRange) {
  static constexpr operation_case cases[] = {
      {1, 7, 8, 1, {0x80, 0}},      {1, 100, 8, 1, {0xFF, 1}},           {1, 6, 8, 0, {0x40, 0}},
      {1, 7, 8, 0, {0x7F, 1}},      {0x80, 1, 8, 0, {0x80, 1}},          {0xFF, 3, 8, 0, {all_ones - 7, 0}},
      {0, all_ones, 64, 0, {0, 0}}, {1, all_ones, 64, 1, {all_ones, 1}},
  };
  expect(SatShiftLeft, cases);
}

TEST(SatShiftLeftU, MakesANegativeValue0) {
  EXPECT_EQ(SatShiftLeftU(0xFF, 0, 8), (SatResult{0, 1}));
  EXPECT_EQ(SatShiftLeftU(0x7F, 1, 8), (SatResult{0xFE, 0}));
  EXPECT_EQ(SatShiftLeftU(0x7F, 2, 8), (SatResult{0xFF, 1}));
  EXPECT_EQ(SatShiftLeftU(1, 1000, 8), (SatResult{0xFF, 1}));
  EXPECT_EQ(SatShiftLeftU(0, 1000, 8), (SatResult{0, 0}));
}

}  // namespace
