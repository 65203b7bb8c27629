// Conversion to fixed-point integers.
#include "sve/arith/float/to_fixed.h"

#include <limits>

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

constexpr FPRounding N = FPRounding_TIEEVEN, P = FPRounding_POSINF, M = FPRounding_NEGINF, Z = FPRounding_ZERO,
                     A = FPRounding_TIEAWAY;

template <class From, class To, bool u, FPRounding rounding, int fbits = 0>
To to_fixed(From value, FPSCR& fpscr) {
  return fplibFPToFixed<From, To>(value, fbits, u, rounding, fpscr);
}

template <class From_, class To_>
struct conversion {
  using From = From_;
  using To = To_;
  static constexpr To largest = std::numeric_limits<To>::max();
  static constexpr To signed_largest = largest >> 1, signed_smallest = largest ^ signed_largest;
};
using conversions =
    testing::Types<conversion<half, std::uint16_t>, conversion<half, std::uint32_t>, conversion<half, std::uint64_t>,
                   conversion<single, std::uint32_t>, conversion<single, std::uint64_t>,
                   conversion<double_bits, std::uint32_t>, conversion<double_bits, std::uint64_t>>;

template <class Conversion>
class ToFixed : public testing::Test {};
TYPED_TEST_SUITE(ToFixed, conversions);

TYPED_TEST(ToFixed, GivesZeroForNansAndTheLimitForInfinities) {
  using From = typename TypeParam::From;
  using To = typename TypeParam::To;
  using v = values<From>;
  check<From, To>(to_fixed<From, To, false, Z>,
                  {
                      {"quiet", {v::quiet}, 0, 0, IOC},
                      {"signalling", {v::signalling}, DN, 0, IOC},
                      {"infinity", {v::inf}, 0, TypeParam::signed_largest, IOC},
                      {"-infinity", {v::minus + v::inf}, 0, TypeParam::signed_smallest, IOC},
                  });
  check<From, To>(to_fixed<From, To, true, N>, {
                                                   {"quiet", {v::minus + v::quiet}, 0, 0, IOC},
                                                   {"signalling", {v::signalling}, 0, 0, IOC},
                                                   {"infinity", {v::inf}, 0, TypeParam::largest, IOC},
                                                   {"-infinity", {v::minus + v::inf}, 0, 0, IOC},
                                               });
}

TYPED_TEST(ToFixed, RoundsAsAsked) {
  using From = typename TypeParam::From;
  using To = typename TypeParam::To;
  const auto minus = [](int value) { return static_cast<To>(-value); };
  struct rounded_case {
    double value;
    int nearest, up, down, truncated, away;
  };
  for (const rounded_case& c : {rounded_case{2.25, 2, 3, 2, 2, 2},
                                {2.5, 2, 3, 2, 2, 3},
                                {3.5, 4, 4, 3, 3, 4},
                                {2.75, 3, 3, 2, 2, 3},
                                {0.5, 0, 1, 0, 0, 1},
                                {0.25, 0, 1, 0, 0, 0}}) {
    const From x = num<From>(c.value), y = num<From>(-c.value);
    check<From, To>(to_fixed<From, To, false, N>,
                    {{"N", {x}, RP, To(c.nearest), IXC}, {"N", {y}, RP, minus(c.nearest), IXC}});
    check<From, To>(to_fixed<From, To, false, P>, {{"P", {x}, RZ, To(c.up), IXC}, {"P", {y}, RZ, minus(c.down), IXC}});
    check<From, To>(to_fixed<From, To, false, M>, {{"M", {x}, RZ, To(c.down), IXC}, {"M", {y}, RZ, minus(c.up), IXC}});
    check<From, To>(to_fixed<From, To, false, Z>,
                    {{"Z", {x}, RM, To(c.truncated), IXC}, {"Z", {y}, RM, minus(c.truncated), IXC}});
    check<From, To>(to_fixed<From, To, false, A>,
                    {{"A", {x}, RM, To(c.away), IXC}, {"A", {y}, RM, minus(c.away), IXC}});
  }
  check<From, To>(to_fixed<From, To, false, N>, {{"exact", {num<From>(-7)}, 0, minus(7), 0}, {"-0", {0}, 0, 0, 0}});
}

TYPED_TEST(ToFixed, OfANegativeToUnsignedIsInvalidUnlessItRoundsToZero) {
  using From = typename TypeParam::From;
  using To = typename TypeParam::To;
  check<From, To>(to_fixed<From, To, true, Z>, {
                                                   {"-0.5", {num<From>(-0.5)}, 0, 0, IXC},
                                                   {"-0.75", {num<From>(-0.75)}, 0, 0, IXC},
                                                   {"-1", {num<From>(-1)}, 0, 0, IOC},
                                                   {"-0", {values<From>::minus}, 0, 0, 0},
                                               });
  check<From, To>(to_fixed<From, To, true, N>, {
                                                   {"-0.5", {num<From>(-0.5)}, 0, 0, IXC},
                                                   {"-0.75", {num<From>(-0.75)}, 0, 0, IOC},
                                               });
}

TYPED_TEST(ToFixed, FlushesAsTheSourceDoes) {
  using From = typename TypeParam::From;
  using To = typename TypeParam::To;
  using v = values<From>;
  check<From, To>(to_fixed<From, To, true, P>, {
                                                   {"a speck", {v::tiny}, 0, 1, IXC},
                                                   {"flushed", {v::tiny}, flush<From>, 0, flushed<From>},
                                                   {"by the other control", {v::tiny}, other_flush<From>, 1, IXC},
                                               });
}

TYPED_TEST(ToFixed, TakesFractionBits) {
  using From = typename TypeParam::From;
  using To = typename TypeParam::To;
  constexpr int bits = 8 * sizeof(To);
  check<From, To>(to_fixed<From, To, false, Z, 4>, {
                                                       {"1.5", {num<From>(1.5)}, 0, 24, 0},
                                                       {"-1/32", {num<From>(-0.03125)}, 0, 0, IXC},
                                                   });
  check<From, To>(to_fixed<From, To, true, Z, bits>, {
                                                         {"1/2", {num<From>(0.5)}, 0, TypeParam::signed_smallest, 0},
                                                         {"1", {num<From>(1)}, 0, TypeParam::largest, IOC},
                                                         {"-1", {num<From>(-1)}, 0, 0, IOC},
                                                     });
}

TEST(ToFixed, SaturatesWithIOCAlone) {
  check<single, std::uint32_t>(to_fixed<single, std::uint32_t, false, N>,
                               {
                                   {"2^31", {0x4F000000}, 0, 0x7FFFFFFF, IOC},
                                   {"-2^31", {0xCF000000}, 0, 0x80000000, 0},
                                   {"below -2^31", {0xCF000001}, 0, 0x80000000, IOC},
                               });
  check<double_bits, std::uint32_t>(to_fixed<double_bits, std::uint32_t, false, Z>,
                                    {
                                        {"2147483647.5", {0x41DFFFFFFFE00000}, 0, 0x7FFFFFFF, IXC},
                                        {"2147483648.5", {0x41E0000000100000}, 0, 0x7FFFFFFF, IOC},
                                        {"-2147483648.5", {0xC1E0000000100000}, 0, 0x80000000, IXC},
                                    });
  check<double_bits, std::uint32_t>(to_fixed<double_bits, std::uint32_t, false, N>,
                                    {{"2147483647.5", {0x41DFFFFFFFE00000}, 0, 0x7FFFFFFF, IOC}});
  check<double_bits, std::uint32_t>(to_fixed<double_bits, std::uint32_t, true, P>,
                                    {
                                        {"2^32 - 1", {0x41EFFFFFFFE00000}, 0, 0xFFFFFFFF, 0},
                                        {"2^32 - 0.5", {0x41EFFFFFFFF00000}, 0, 0xFFFFFFFF, IOC},
                                    });
  check<double_bits, std::uint64_t>(to_fixed<double_bits, std::uint64_t, false, N>,
                                    {
                                        {"2^63", {0x43E0000000000000}, 0, 0x7FFFFFFFFFFFFFFF, IOC},
                                        {"below 2^63", {0x43DFFFFFFFFFFFFF}, 0, 0x7FFFFFFFFFFFFC00, 0},
                                        {"-2^63", {0xC3E0000000000000}, 0, 0x8000000000000000, 0},
                                        {"below -2^63", {0xC3E0000000000001}, 0, 0x8000000000000000, IOC},
                                    });
  check<double_bits, std::uint64_t>(to_fixed<double_bits, std::uint64_t, true, N>,
                                    {
                                        {"below 2^64", {0x43EFFFFFFFFFFFFF}, 0, 0xFFFFFFFFFFFFF800, 0},
                                        {"2^64", {0x43F0000000000000}, 0, ~0ULL, IOC},
                                        {"the largest", {values<double_bits>::largest}, 0, ~0ULL, IOC},
                                    });
}

TEST(ToFixed, Of65504FitsUnsignedHalfwordsAndNotSignedOnes) {
  check<half, std::uint16_t>(to_fixed<half, std::uint16_t, true, N>, {{"65504", {0x7BFF}, 0, 65504, 0}});
  check<half, std::uint16_t>(to_fixed<half, std::uint16_t, false, N>, {
                                                                          {"65504", {0x7BFF}, 0, 0x7FFF, IOC},
                                                                          {"-32768", {0xF800}, 0, 0x8000, 0},
                                                                          {"-65504", {0xFBFF}, 0, 0x8000, IOC},
                                                                      });
}

TEST(FPToFixed64, AssignsTheFlags) {
  constexpr std::uint64_t one = 1ULL << 52;
  int flags = DZC | IDC;
  EXPECT_EQ(FPToFixed_64(0, 1023 + 3, one, false, N, &flags), 8U);
  EXPECT_EQ(flags, DZC | IDC);
  EXPECT_EQ(FPToFixed_64(1, 1023 + 3, one + 1, false, N, &flags), 0 - 8ULL);
  EXPECT_EQ(flags, IXC);
  EXPECT_EQ(FPToFixed_64(1, 1023 + 3, one, true, N, &flags), 0U);
  EXPECT_EQ(flags, IOC);
}

TEST(FPToFixed64, ReachesFromTheLastBitOf64ToFarBelowTheFirst) {
  constexpr std::uint64_t one = 1ULL << 52;
  int flags = 0;
  EXPECT_EQ(FPToFixed_64(0, 1086, 2 * one - 1, true, Z, &flags), 0xFFFFFFFFFFFFF800);
  EXPECT_EQ(flags, 0);
  EXPECT_EQ(FPToFixed_64(0, 1, 1, true, P, &flags), 1U);
  EXPECT_EQ(flags, IXC);
}

}  // namespace
}  // namespace quern
