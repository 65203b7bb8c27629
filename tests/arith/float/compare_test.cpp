// Comparison.
#include "sve/arith/float/compare.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class Comparison : public testing::Test {};
TYPED_TEST_SUITE(Comparison, formats);

TYPED_TEST(Comparison, ZerosAndFlushedSubnormalsAreEqual) {
  using T = TypeParam;
  using v = values<T>;
  check<T, bool>(FPCompareEQ, {
                                  {"two subnormals", {v::tiny, v::subnormal}, flush<T>, true, flushed<T>},
                                  {"of two signs", {v::tiny, v::minus + v::tiny}, flush<T>, true, flushed<T>},
                                  {"by the other bit", {v::tiny, v::subnormal}, other_flush<T>, false, 0},
                                  {"+0 and -0", {0, v::minus}, 0, true, 0},
                                  {"equals", {num<T>(3), num<T>(3)}, 0, true, 0},
                                  {"opposites", {num<T>(3), num<T>(-3)}, 0, false, 0},
                              });
  check<T, bool>(FPCompareGE, {{"-0 and +0", {v::minus, 0}, 0, true, 0}, {"+0 and -0", {0, v::minus}, 0, true, 0}});
  check<T, bool>(FPCompareGT, {{"-0 and +0", {v::minus, 0}, 0, false, 0}, {"+0 and -0", {0, v::minus}, 0, false, 0}});
}

TYPED_TEST(Comparison, AQuietNaNRaisesIOCInOrderedComparisonsAlone) {
  using T = TypeParam;
  using v = values<T>;
  check<T, bool>(FPCompareGE, {{"quiet", {v::quiet, 0}, 0, false, IOC}, {"both", {v::nan, v::nan}, 0, false, IOC}});
  check<T, bool>(FPCompareGT, {{"quiet", {0, v::quiet}, 0, false, IOC}, {"DN", {v::nan, 0}, DN, false, IOC}});
  check<T, bool>(FPCompareEQ, {
                                  {"quiet", {v::quiet, v::quiet}, 0, false, 0},
                                  {"signalling", {0, v::signalling}, 0, false, IOC},
                              });
  check<T, bool>(FPCompareUN, {
                                  {"numbers", {num<T>(1), v::inf}, 0, false, 0},
                                  {"a quiet first", {v::quiet, 0}, 0, true, 0},
                                  {"a quiet second", {0, v::quiet}, 0, true, 0},
                                  {"signalling", {v::quiet, v::signalling}, 0, true, IOC},
                                  {"flushed", {v::tiny, v::quiet}, flush<T>, true, flushed<T>},
                              });
}

// All numbers in ascending order, each compared with each.
TYPED_TEST(Comparison, NumbersAreOrdered) {
  using T = TypeParam;
  using v = values<T>;
  const T ascending[] = {v::minus + v::inf,
                         v::minus + v::largest,
                         num<T>(-2),
                         num<T>(-1.5),
                         num<T>(-1),
                         v::minus + v::smallest,
                         v::minus + v::subnormal,
                         v::minus + v::tiny,
                         0,
                         v::tiny,
                         v::subnormal,
                         v::smallest,
                         num<T>(1),
                         num<T>(1.5),
                         num<T>(2),
                         v::largest,
                         v::inf};
  FPSCR fpscr;
  for (const T& a : ascending) {
    for (const T& b : ascending) {
      EXPECT_EQ(FPCompareEQ(a, b, fpscr), &a == &b) << +a << ' ' << +b;
      EXPECT_EQ(FPCompareGE(a, b, fpscr), &a >= &b) << +a << ' ' << +b;
      EXPECT_EQ(FPCompareGT(a, b, fpscr), &a > &b) << +a << ' ' << +b;
    }
  }
  EXPECT_EQ(fpscr.word, 0U);
}

template <class T>
void check_flags_of_comparison() {
  using v = values<T>;
  constexpr auto compare = [](T a, T b, FPSCR& fpscr) { return FPCompare(a, b, false, fpscr); };
  constexpr auto compare_signalling = [](T a, T b, FPSCR& fpscr) { return FPCompare(a, b, true, fpscr); };
  check<T, int>(compare, {
                             {"equal", {num<T>(1), num<T>(1)}, 0, 6, 0},
                             {"zeros", {0, v::minus}, 0, 6, 0},
                             {"flushed", {v::tiny, v::minus}, FZ, 6, IDC},
                             {"greater", {num<T>(1), num<T>(-1)}, 0, 2, 0},
                             {"less", {v::minus + v::inf, num<T>(1)}, 0, 8, 0},
                             {"unordered", {v::quiet, num<T>(1)}, 0, 3, 0},
                             {"signalling", {num<T>(1), v::signalling}, 0, 3, IOC},
                         });
  check<T, int>(compare_signalling,
                {{"unordered", {v::quiet, num<T>(1)}, 0, 3, IOC}, {"less", {num<T>(1), num<T>(2)}, 0, 8, 0}});
}

TEST(FPCompare, GivesTheFlagsAsANibble) {
  check_flags_of_comparison<single>();
  check_flags_of_comparison<double_bits>();
}

}  // namespace
}  // namespace quern
