// The rounders and the controls they read.
#include "sve/arith/float/round.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

// Fraction words are those of the rounders: all bits below a leading one that isn't written.
template <class T>
struct round_case {
  const char* what;
  int sgn, exp;
  T mnt;
  int rm, mode;
  T result;
  int flags;
};

template <class T>
void check(T (*rounder)(int, int, T, int, int, int*), std::initializer_list<round_case<T>> cases) {
  for (const round_case<T>& c : cases) {
    int flags = 0;
    EXPECT_EQ(rounder(c.sgn, c.exp, c.mnt, c.rm, c.mode, &flags), c.result) << c.what;
    EXPECT_EQ(flags, c.flags) << c.what;
  }
}

constexpr FPRounding N = FPRounding_TIEEVEN, P = FPRounding_POSINF, M = FPRounding_NEGINF, Z = FPRounding_ZERO,
                     A = FPRounding_TIEAWAY, O = FPRounding_ODD;

TEST(Fp16Round, GivesTheNearestHalfAndTheFlags) {
  check<half>(fp16_round_, {
                               {"1 is exact", 0, 15, 0, N, 0, 0x3C00, 0},
                               {"the tie below an even one", 0, 15, 0x0020, N, 0, 0x3C00, IXC},
                               {"the tie above an odd one", 0, 15, 0x0060, N, 0, 0x3C02, IXC},
                               {"just above the tie", 0, 15, 0x0021, N, 0, 0x3C01, IXC},
                               {"just below the tie", 0, 15, 0x005F, N, 0, 0x3C01, IXC},
                               {"up to the next exponent", 0, 15, 0xFFFF, N, 0, 0x4000, IXC},
                               {"towards plus infinity, positive", 0, 15, 1, P, 0, 0x3C01, IXC},
                               {"towards plus infinity, negative", 1, 15, 1, P, 0, 0xBC00, IXC},
                               {"towards minus infinity, positive", 0, 15, 1, M, 0, 0x3C00, IXC},
                               {"towards minus infinity, negative", 1, 15, 1, M, 0, 0xBC01, IXC},
                               {"truncation", 1, 15, 0xFFFF, Z, 0, 0xBFFF, IXC},
                               {"ties away is truncation here", 0, 15, 0xFFFF, A, 0, 0x3FFF, IXC},
                               {"odd leaves an exact value", 0, 15, 0x0080, O, 0, 0x3C02, 0},
                               {"odd forces bit 0 of an inexact one", 0, 15, 0x0081, O, 0, 0x3C03, IXC},
                               {"the smallest normal is exact", 0, 1, 0, N, 0, 0x0400, 0},
                               {"up to the smallest normal", 0, 0, 0xFFFF, N, 0, 0x0400, UFC | IXC},
                               {"the same, flushed", 0, 0, 0xFFFF, N, mode_FZ16, 0, UFC},
                               {"the same, negative", 1, 0, 0xFFFF, N, mode_FZ16, 0x8000, UFC},
                               {"FZ is not for halves", 0, 0, 0xFFFF, N, mode_FZ, 0x0400, UFC | IXC},
                               {"an exact subnormal", 0, -1, 0x8000, N, 0, 0x0180, 0},
                               {"the smallest subnormal", 0, -9, 0, N, 0, 0x0001, 0},
                               {"half of it is a tie to zero", 0, -10, 0, N, 0, 0, UFC | IXC},
                               {"more than half of it", 0, -10, 1, N, 0, 1, UFC | IXC},
                               {"far below", 0, -500, 0, P, 0, 1, UFC | IXC},
                               {"far below, truncated", 1, -500, 0xFFFF, Z, 0, 0x8000, UFC | IXC},
                           });
}

TEST(Fp16Round, OverflowsToInfinityOrToTheLargestNormalByRoundingAndSign) {
  check<half>(fp16_round_, {
                               {"nearest", 0, 31, 0, N, 0, 0x7C00, OFC | IXC},
                               {"nearest, by rounding up", 1, 30, 0xFFE0, N, 0, 0xFC00, OFC | IXC},
                               {"nearest, just not", 0, 30, 0xFFDF, N, 0, 0x7BFF, IXC},
                               {"upwards", 0, 31, 0, P, 0, 0x7C00, OFC | IXC},
                               {"upwards, negative", 1, 31, 0, P, 0, 0xFBFF, OFC | IXC},
                               {"downwards", 0, 31, 0, M, 0, 0x7BFF, OFC | IXC},
                               {"downwards, negative", 1, 31, 0, M, 0, 0xFC00, OFC | IXC},
                               {"truncation", 0, 99, 0, Z, 0, 0x7BFF, OFC | IXC},
                               {"truncation, negative", 1, 99, 0, Z, 0, 0xFBFF, OFC | IXC},
                               {"odd", 0, 31, 0, O, 0, 0x7BFF, OFC | IXC},
                           });
}

TEST(Fp16Round, HasOneMoreExponentUnderAHPAndIOCAloneAboveIt) {
  check<half>(fp16_round_, {
                               {"exponent 31 is a number's", 0, 31, 0, N, mode_AHP, 0x7C00, 0},
                               {"the largest", 0, 31, 0xFFC0, N, mode_AHP, 0x7FFF, 0},
                               {"inexact there", 1, 31, 0x0001, Z, mode_AHP, 0xFC00, IXC},
                               {"above", 0, 32, 0, N, mode_AHP, 0x7FFF, IOC},
                               {"above, negative", 1, 32, 0, N, mode_AHP, 0xFFFF, IOC},
                               {"above, by rounding up", 0, 31, 0xFFE0, N, mode_AHP, 0x7FFF, IOC},
                               {"above, truncated", 0, 40, 0, Z, mode_AHP, 0x7FFF, IOC},
                           });
}

TEST(Fp32Round, GivesTheNearestSingleAndTheFlags) {
  check<single>(fp32_round_, {
                                 {"the tie below an even one", 0, 127, 0x00000100, N, 0, 0x3F800000, IXC},
                                 {"the tie above an odd one", 0, 127, 0x00000300, N, 0, 0x3F800002, IXC},
                                 {"the lowest bit is sticky", 0, 127, 0x00000101, N, 0, 0x3F800001, IXC},
                                 {"up to the smallest normal", 0, 0, 0xFFFFFFFF, N, 0, 0x00800000, UFC | IXC},
                                 {"the same, flushed", 1, 0, 0xFFFFFFFF, N, mode_FZ, 0x80000000, UFC},
                                 {"FZ16 is for halves", 0, 0, 0xFFFFFFFF, N, mode_FZ16, 0x00800000, UFC | IXC},
                                 {"AHP is for halves", 0, 255, 0, N, mode_AHP, 0x7F800000, OFC | IXC},
                                 {"odd on an exact value", 0, 127, 0x00000400, O, 0, 0x3F800002, 0},
                                 {"odd on an inexact, even one", 0, 127, 0x00000401, O, 0, 0x3F800003, IXC},
                                 {"overflow in truncation", 1, 255, 0, Z, 0, 0xFF7FFFFF, OFC | IXC},
                                 {"an exact subnormal", 0, -22, 0, N, 0, 0x00000001, 0},
                                 {"far below", 1, -100000, 0, M, 0, 0x80000001, UFC | IXC},
                             });
}

TEST(Fp64Round, GivesTheNearestDoubleAndTheFlags) {
  check<double_bits>(fp64_round_, {
                                      {"the tie below an even one", 0, 1023, 0x0800, N, 0, 0x3FF0000000000000, IXC},
                                      {"the tie above an odd one", 0, 1023, 0x1800, N, 0, 0x3FF0000000000002, IXC},
                                      {"the lowest bit is sticky", 0, 1023, 0x0801, N, 0, 0x3FF0000000000001, IXC},
                                      {"up to the smallest normal", 0, 0, ~0ULL, N, 0, 0x0010000000000000, UFC | IXC},
                                      {"the same, flushed", 1, 0, ~0ULL, N, mode_FZ, 0x8000000000000000, UFC},
                                      {"odd only truncates", 0, 1023, 0x2001, O, 0, 0x3FF0000000000002, IXC},
                                      {"overflow in truncation", 0, 2047, 0, Z, 0, 0x7FEFFFFFFFFFFFFF, OFC | IXC},
                                      {"an exact subnormal", 0, -51, 0, N, 0, 1, 0},
                                      {"far below", 0, -100000, 1, N, 0, 0, UFC | IXC},
                                  });
}

TEST(Rounders, OnlyAddFlags) {
  int flags = DZC | IDC;
  fp32_round_(0, 127, 1, N, 0, &flags);
  EXPECT_EQ(flags, DZC | IDC | IXC);
}

TEST(ModeOf, GathersTheControls) {
  EXPECT_EQ(mode_of({RP}), 1);
  EXPECT_EQ(mode_of({RM}), 2);
  EXPECT_EQ(mode_of({FZ}), 4);
  EXPECT_EQ(mode_of({DN}), 8);
  EXPECT_EQ(mode_of({FZ16}), 32);
  EXPECT_EQ(mode_of({AHP}), 0) << "only a conversion to half looks at AHP";
  EXPECT_EQ(mode_of({0xF000FFFF}), 0) << "status and trap enables";
}

}  // namespace
}  // namespace quern
