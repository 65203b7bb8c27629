// Estimates of reciprocals and reciprocal square roots, and the reciprocal of an exponent.
#include "sve/arith/float/estimate.h"

#include "sve/arith/float/unsigned_estimate.h"
#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class Estimate : public testing::Test {};
TYPED_TEST_SUITE(Estimate, formats);

TYPED_TEST(Estimate, OfTheReciprocalOfZerosInfinitiesAndNaNs) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPRecipEstimate,
           {
               {"+0", {0}, 0, v::inf, DZC},
               {"-0", {v::minus}, 0, v::minus + v::inf, DZC},
               {"a flushed subnormal", {v::minus + v::subnormal}, flush<T>, v::minus + v::inf, DZC | flushed<T>},
               {"infinity", {v::inf}, 0, 0, 0},
               {"minus infinity", {v::minus + v::inf}, 0, v::minus, 0},
               {"signalling", {v::signalling}, 0, v::made_quiet, IOC},
               {"DN", {v::minus + v::quiet}, DN, v::nan, 0},
           });
}

TYPED_TEST(Estimate, OfAReciprocalTooLargeOverflowsByTheRounding) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T limit = v::smallest / 4, below = limit - 1;
  constexpr T minus_inf = v::minus + v::inf, minus_largest = v::minus + v::largest;
  check<T>(FPRecipEstimate, {
                                {"nearest", {v::tiny}, RN, v::inf, OFC | IXC},
                                {"just below", {v::minus + below}, RN, minus_inf, OFC | IXC},
                                {"just not", {limit}, RN, v::inf - (v::smallest >> 8), 0},
                                {"up", {below}, RP, v::inf, OFC | IXC},
                                {"up, negative", {v::minus + below}, RP, minus_largest, OFC | IXC},
                                {"down", {below}, RM, v::largest, OFC | IXC},
                                {"down, negative", {v::minus + below}, RM, minus_inf, OFC | IXC},
                                {"truncated", {v::minus + v::tiny}, RZ, minus_largest, OFC | IXC},
                            });
}

TEST(FPRecipEstimate, GivesThePatternsOfTheDefinition) {
  check<single>(FPRecipEstimate,
                {
                    {"2^-150 doesn't exist, and the smallest subnormal overflows", {1}, RZ, 0x7F7FFFFF, OFC | IXC},
                    {"1.0: x is 513, r is 511", {0x3F800000}, 0, 0x3F7F8000, 0},
                    {"-1.0", {0xBF800000}, 0, 0xBF7F8000, 0},
                    {"just below 2: x is 1023, r is 256", {0x3FFFFFFF}, 0, 0x3F000000, 0},
                    {"2^126 flushed", {0x7E800000}, FZ, 0, UFC},
                    {"-2^126 flushed", {0xFE800000}, FZ, 0x80000000, UFC},
                    {"2^126: a subnormal", {0x7E800000}, 0, 0x007FC000, 0},
                    {"2^127: a smaller one", {0x7F000000}, 0, 0x003FE000, 0},
                    {"2^125 is not flushed", {0x7E000000}, FZ, 0x00FF8000, 0},
                    {"FZ16 is not for singles", {0x7E800000}, FZ16, 0x007FC000, 0},
                    {"a subnormal operand", {0x00400000}, 0, 0x7EFF8000, 0},
                    {"2^-128", {0x00200000}, 0, 0x7F7F8000, 0},
                });
  check<half>(FPRecipEstimate, {
                                   {"1.0", {0x3C00}, 0, 0x3BFC, 0},
                                   {"2^14 flushed", {0x7400}, FZ16, 0, UFC},
                                   {"2^14", {0x7400}, FZ, 0x03FE, 0},
                                   {"2^15", {0x7800}, 0, 0x01FF, 0},
                                   {"2^13", {0x7000}, FZ16, 0x07FC, 0},
                               });
  check<double_bits>(FPRecipEstimate, {
                                          {"1.0", {0x3FF0000000000000}, 0, 0x3FEFF00000000000, 0},
                                          {"2^1022 flushed", {0x7FD0000000000000}, FZ, 0, UFC},
                                          {"2^1022", {0x7FD0000000000000}, 0, 0x000FF80000000000, 0},
                                          {"2^1023", {0x7FE0000000000000}, 0, 0x0007FC0000000000, 0},
                                      });
}

TYPED_TEST(Estimate, OfTheReciprocalRootOfZerosNegativesInfinitiesAndNaNs) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPRSqrtEstimate,
           {
               {"+0", {0}, 0, v::inf, DZC},
               {"-0", {v::minus}, 0, v::minus + v::inf, DZC},
               {"a flushed negative subnormal", {v::minus + v::tiny}, flush<T>, v::minus + v::inf, DZC | flushed<T>},
               {"a negative subnormal", {v::minus + v::tiny}, other_flush<T>, v::nan, IOC},
               {"a negative", {num<T>(-1)}, 0, v::nan, IOC},
               {"infinity", {v::inf}, 0, 0, 0},
               {"minus infinity", {v::minus + v::inf}, 0, v::nan, IOC},
               {"a negative signalling NaN", {v::minus + v::signalling}, 0, v::minus + v::made_quiet, IOC},
               {"DN", {v::quiet}, DN, v::nan, 0},
           });
}

TEST(FPRSqrtEstimate, UsesTheUpperHalfOfTheTableForEvenExponents) {
  check<single>(FPRSqrtEstimate, {
                                     {"1.0, exponent 127: entry 0", {0x3F800000}, 0, 0x3F7F8000, 0},
                                     {"just below 2: entry 127", {0x3FFFFFFF}, 0, 0x3F350000, 0},
                                     {"2.0, exponent 128: entry 128", {0x40000000}, 0, 0x3F348000, 0},
                                     {"just below 4: entry 255", {0x407FFFFF}, 0, 0x3F000000, 0},
                                     {"the smallest subnormal", {1}, 0, 0x64B48000, 0},
                                     {"half of the smallest normal", {0x00400000}, 0, 0x5F348000, 0},
                                 });
  check<half>(FPRSqrtEstimate, {
                                   {"1.0: entry 0", {0x3C00}, 0, 0x3BFC, 0},
                                   {"2.0: entry 128", {0x4000}, 0, 0x39A4, 0},
                                   {"the smallest subnormal", {1}, 0, 0x6BFC, 0},
                               });
  check<double_bits>(FPRSqrtEstimate, {
                                          {"1.0: entry 0", {0x3FF0000000000000}, 0, 0x3FEFF00000000000, 0},
                                          {"2.0: entry 128", {0x4000000000000000}, 0, 0x3FE6900000000000, 0},
                                          {"the smallest subnormal", {1}, 0, 0x617FF00000000000, 0},
                                      });
}

// Against the true value: the published estimates are within 2^-8 of it.
TEST(Estimates, AreNearTheTrueValue) {
  for (single a = 0x3F800000; a < 0x40800000; a += 0x1357) {
    FPSCR fpscr;
    const double exact = std::bit_cast<float>(a);
    const double recip = std::bit_cast<float>(FPRecipEstimate(a, fpscr));
    const double root = std::bit_cast<float>(FPRSqrtEstimate(a, fpscr));
    ASSERT_NEAR(recip * exact, 1.0, 1.0 / 256) << a;
    ASSERT_NEAR(root * root * exact, 1.0, 2.0 / 256) << a;
    ASSERT_EQ(fpscr.word, 0U);
  }
}

TYPED_TEST(Estimate, OfAnExponentsReciprocal) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T top_power = v::inf - v::smallest;  // 2^bias
  check<T>(FPRecpX, {
                        {"1.0 gives 2.0", {num<T>(1)}, 0, num<T>(2), 0},
                        {"-1.5 loses its fraction", {num<T>(-1.5)}, 0, num<T>(-2), 0},
                        {"+0", {0}, 0, top_power, 0},
                        {"-0", {v::minus}, FZ, v::minus + top_power, 0},
                        {"a subnormal", {v::subnormal}, 0, top_power, 0},
                        {"a flushed subnormal", {v::minus + v::tiny}, flush<T>, v::minus + top_power, flushed<T>},
                        {"the smallest normal", {v::smallest}, 0, top_power, 0},
                        {"the largest", {v::largest}, 0, v::smallest, 0},
                        {"minus infinity", {v::minus + v::inf}, 0, v::minus, 0},
                        {"quiet", {v::minus + v::quiet}, 0, v::minus + v::quiet, 0},
                        {"signalling under DN", {v::signalling}, DN, v::nan, IOC},
                    });
}

TEST(FPRecpX, InvertsTheExponentField) {
  for (int exp = 1; exp != 255; ++exp) {
    FPSCR fpscr;
    EXPECT_EQ(FPRecpX(pack<single>(1, exp, 0x123456), fpscr), pack<single>(1, ~exp & 255, 0)) << exp;
  }
}

struct fixed_case {
  std::uint64_t operand, result;
};

TEST(UnsignedRecipEstimate, OfFractionsOfOne) {
  const fixed_case cases[] = {
      {0x7FFFFFFF, 0xFFFFFFFF}, {0, 0xFFFFFFFF},          {0x80000000, 0xFF800000},  {0x80800000, 0xFE800000},
      {0xFFFFFFFF, 0x80000000}, {0xC0000000, 0xAA800000}, {0x500000000, 0xFFFFFFFF}, {0x5C0000000, 0xAA800000},
  };
  for (const fixed_case& c : cases) {
    EXPECT_EQ(UnsignedRecipEstimate(c.operand, 32), c.result) << std::hex << c.operand;
    EXPECT_EQ(UnsignedRecipEstimate(c.operand, 64), c.result) << "the size plays no part";
  }
}

TEST(UnsignedRSqrtEstimate, OfFractionsOfOne) {
  const fixed_case cases[] = {
      {0x3FFFFFFF, 0xFFFFFFFF}, {0x40000000, 0xFF800000}, {0x7FFFFFFF, 0xB5000000},
      {0x80000000, 0xB4800000}, {0xFFFFFFFF, 0x80000000}, {0xF3FFFFFFF, 0xFFFFFFFF},
  };
  for (const fixed_case& c : cases) EXPECT_EQ(UnsignedRSqrtEstimate(c.operand, 32), c.result) << std::hex << c.operand;
}

// A number in [1, 2) as a multiple of 2^-31.
std::uint64_t to_fixed_point(single a) { return 0x80000000 | (std::uint64_t{a} << 8 & 0x7FFFFFFF); }

// The fixed-point estimates and the floating-point ones are the same function of the same top bits.
TEST(UnsignedRecipEstimate, AgreesWithTheFloatingPointEstimate) {
  for (std::uint64_t v = 0x80000000; v <= 0xFFFFFFFF; v += 0x3FFFFF) {
    FPSCR fpscr;
    const single a = pack<single>(0, 126, static_cast<single>(v >> 8));
    ASSERT_EQ(UnsignedRecipEstimate(v, 32), to_fixed_point(FPRecipEstimate(a, fpscr)));
  }
}

TEST(UnsignedRSqrtEstimate, AgreesWithTheFloatingPointEstimate) {
  for (std::uint64_t v = 0x40000000; v <= 0xFFFFFFFF; v += 0x3FFFFF) {
    FPSCR fpscr;
    const bool upper = v >> 31;
    const single a = pack<single>(0, upper ? 126 : 125, static_cast<single>(v >> (upper ? 8 : 7)));
    ASSERT_EQ(UnsignedRSqrtEstimate(v, 32), to_fixed_point(FPRSqrtEstimate(a, fpscr)));
  }
}

}  // namespace
}  // namespace quern
