// Rounding to an integral value.
#include "sve/arith/float/round_to_integral.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

constexpr FPRounding N = FPRounding_TIEEVEN, P = FPRounding_POSINF, M = FPRounding_NEGINF, Z = FPRounding_ZERO,
                     A = FPRounding_TIEAWAY;

template <class T, FPRounding rounding, bool exact>
T round_int(T op, FPSCR& fpscr) {
  return FPRoundInt<T>(op, rounding, exact, fpscr);
}

template <class T>
class RoundToIntegral : public testing::Test {};
TYPED_TEST_SUITE(RoundToIntegral, formats);

TYPED_TEST(RoundToIntegral, RoundsAsAskedWhateverTheMode) {
  using T = TypeParam;
  struct rounded_case {
    double value, nearest, up, down, truncated, away;
  };
  for (const rounded_case& c : {
           rounded_case{2.25, 2, 3, 2, 2, 2},
           {2.5, 2, 3, 2, 2, 3},
           {3.5, 4, 4, 3, 3, 4},
           {2.75, 3, 3, 2, 2, 3},
           {1023.5, 1024, 1024, 1023, 1023, 1024},
           {1.5, 2, 2, 1, 1, 2},
           {0.75, 1, 1, 0, 0, 1},
           {0.5, 0, 1, 0, 0, 1},
           {0.25, 0, 1, 0, 0, 0},
           {0.001953125, 0, 1, 0, 0, 0},
       }) {
    const T x = num<T>(c.value), y = num<T>(-c.value);
    check<T>(round_int<T, N, false>, {{"N", {x}, RP, num<T>(c.nearest), 0}, {"N", {y}, RP, num<T>(-c.nearest), 0}});
    check<T>(round_int<T, P, false>, {{"P", {x}, RZ, num<T>(c.up), 0}, {"P", {y}, RZ, num<T>(-c.down), 0}});
    check<T>(round_int<T, M, false>, {{"M", {x}, RZ, num<T>(c.down), 0}, {"M", {y}, RZ, num<T>(-c.up), 0}});
    check<T>(round_int<T, Z, false>, {{"Z", {x}, RM, num<T>(c.truncated), 0}, {"Z", {y}, RM, num<T>(-c.truncated), 0}});
    check<T>(round_int<T, A, false>, {{"A", {x}, RM, num<T>(c.away), 0}, {"A", {y}, RM, num<T>(-c.away), 0}});
  }
}

TYPED_TEST(RoundToIntegral, KeepsTheSignOfAZeroResult) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(round_int<T, P, false>, {
                                       {"-0.3125", {num<T>(-0.3125)}, 0, v::minus, 0},
                                       {"-0", {v::minus}, 0, v::minus, 0},
                                       {"a negative speck", {v::minus + v::tiny}, 0, v::minus, 0},
                                   });
  check<T>(round_int<T, M, true>, {{"0.3125", {num<T>(0.3125)}, RM, 0, IXC}, {"0", {0}, RM, 0, 0}});
}

TYPED_TEST(RoundToIntegral, IsInexactOnlyIfAskedToTell) {
  using T = TypeParam;
  const auto all_exact = {round_int<T, N, true>, round_int<T, P, true>, round_int<T, M, true>, round_int<T, Z, true>,
                          round_int<T, A, true>};
  for (const auto op : all_exact) {
    for (const double value : {0.5, 1.5, 2.25, 0.25}) {
      FPSCR fpscr{};
      op(num<T>(value), fpscr);
      EXPECT_EQ(fpscr.word, static_cast<std::uint32_t>(IXC)) << value;
    }
    check<T>(op, {{"1", {num<T>(1)}, 0, num<T>(1), 0}, {"-1000", {num<T>(-1000)}, 0, num<T>(-1000), 0}});
  }
  check<T>(round_int<T, N, false>, {{"0.5", {num<T>(0.5)}, 0, 0, 0}});
}

TYPED_TEST(RoundToIntegral, LeavesLargeNumbersAndInfinitiesAlone) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T odd = pack<T>(0, v::format::bias + v::format::fraction_bits, 1);  // the last bit is worth 1
  check<T>(round_int<T, A, true>, {
                                      {"odd", {odd}, 0, odd, 0},
                                      {"the last half", {odd - v::smallest}, 0, odd - v::smallest + 1, IXC},
                                      {"the largest", {v::largest}, 0, v::largest, 0},
                                      {"-infinity", {v::minus + v::inf}, 0, v::minus + v::inf, 0},
                                  });
}

TYPED_TEST(RoundToIntegral, QuietsNansAndFlushesSubnormals) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(round_int<T, P, true>, {
                                      {"quiet", {v::minus + v::quiet}, 0, v::minus + v::quiet, 0},
                                      {"signalling", {v::signalling}, 0, v::made_quiet, IOC},
                                      {"DN", {v::minus + v::quiet}, DN, v::nan, 0},
                                      {"a speck", {v::tiny}, 0, num<T>(1), IXC},
                                      {"flushed", {v::tiny}, flush<T>, 0, flushed<T>},
                                      {"the other control", {v::tiny}, other_flush<T>, num<T>(1), IXC},
                                  });
}

}  // namespace
}  // namespace quern
