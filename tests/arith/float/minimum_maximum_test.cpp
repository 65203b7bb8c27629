// The greater and the smaller of two numbers.
#include "sve/arith/float/minimum_maximum.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class MinimumMaximum : public testing::Test {};
TYPED_TEST_SUITE(MinimumMaximum, formats);

TYPED_TEST(MinimumMaximum, GreaterAndSmallerOfNumbers) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T minus_inf = v::minus + v::inf;
  for (const auto op : {FPMax<T>, FPMaxNum<T>}) {
    check<T>(op, {
                     {"positive", {num<T>(1), num<T>(2)}, 0, num<T>(2), 0},
                     {"negative", {num<T>(-1), num<T>(-2)}, 0, num<T>(-1), 0},
                     {"mixed", {num<T>(-3), num<T>(2)}, 0, num<T>(2), 0},
                     {"+0 and -0", {0, v::minus}, 0, 0, 0},
                     {"-0 and +0", {v::minus, 0}, 0, 0, 0},
                     {"infinities", {minus_inf, v::inf}, 0, v::inf, 0},
                     {"minus infinity", {minus_inf, num<T>(-2)}, 0, num<T>(-2), 0},
                     {"equals", {num<T>(5), num<T>(5)}, 0, num<T>(5), 0},
                 });
  }
  for (const auto op : {FPMin<T>, FPMinNum<T>}) {
    check<T>(op, {
                     {"positive", {num<T>(1), num<T>(2)}, 0, num<T>(1), 0},
                     {"negative", {num<T>(-1), num<T>(-2)}, 0, num<T>(-2), 0},
                     {"mixed", {num<T>(-3), num<T>(2)}, 0, num<T>(-3), 0},
                     {"+0 and -0", {0, v::minus}, 0, v::minus, 0},
                     {"-0 and +0", {v::minus, 0}, 0, v::minus, 0},
                     {"infinities", {minus_inf, v::inf}, 0, minus_inf, 0},
                     {"infinity", {v::inf, num<T>(-2)}, 0, num<T>(-2), 0},
                 });
  }
}

TYPED_TEST(MinimumMaximum, SubnormalsComeOutAsThemselvesOrFlushedWithTheirSign) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T minus_subnormal = v::minus + v::subnormal;
  check<T>(FPMax, {
                      {"kept", {v::tiny, v::subnormal}, 0, v::subnormal, 0},
                      {"the other bit", {v::tiny, v::subnormal}, other_flush<T>, v::subnormal, 0},
                      {"a flushed one and +0", {v::subnormal, 0}, flush<T>, 0, flushed<T>},
                      {"a flushed negative one and -1", {minus_subnormal, num<T>(-1)}, flush<T>, v::minus, flushed<T>},
                      {"a flushed negative one and -0 are ordered as they came",
                       {v::minus, minus_subnormal},
                       flush<T>,
                       v::minus,
                       flushed<T>},
                      {"a flushed loser", {v::subnormal, num<T>(1)}, flush<T>, num<T>(1), flushed<T>},
                  });
  check<T>(FPMin, {{"a flushed positive one and 1", {num<T>(1), v::subnormal}, flush<T>, 0, flushed<T>}});
}

TYPED_TEST(MinimumMaximum, ANaNWinsButANumberBeatsAQuietOneInTheNumericForms) {
  using T = TypeParam;
  using v = values<T>;
  for (const auto op : {FPMax<T>, FPMin<T>}) {
    check<T>(op, {
                     {"quiet", {num<T>(1), v::quiet}, 0, v::quiet, 0},
                     {"signalling", {v::quiet, v::signalling}, 0, v::made_quiet, IOC},
                     {"DN", {v::minus + v::quiet, num<T>(1)}, DN, v::nan, 0},
                 });
  }
  for (const auto op : {FPMaxNum<T>, FPMinNum<T>}) {
    check<T>(op, {
                     {"a quiet first", {v::quiet, num<T>(-1)}, 0, num<T>(-1), 0},
                     {"a quiet second", {num<T>(-1), v::minus + v::quiet}, DN, num<T>(-1), 0},
                     {"two quiet", {v::quiet, v::nan}, 0, v::quiet, 0},
                     {"two quiet under DN", {v::quiet, v::quiet}, DN, v::nan, 0},
                     {"signalling", {v::signalling, num<T>(1)}, 0, v::made_quiet, IOC},
                     {"quiet and signalling", {v::quiet, v::signalling}, 0, v::made_quiet, IOC},
                     {"quiet and a flushed subnormal", {v::quiet, v::tiny}, flush<T>, 0, flushed<T>},
                 });
  }
  const T minus_inf = v::minus + v::inf;
  check<T>(FPMaxNum, {{"quiet and minus infinity", {v::quiet, minus_inf}, 0, minus_inf, 0}});
  check<T>(FPMinNum, {{"quiet and infinity", {v::inf, v::quiet}, 0, v::inf, 0}});
}

}  // namespace
}  // namespace quern
