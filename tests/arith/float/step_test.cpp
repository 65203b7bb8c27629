// The refining steps for reciprocals.
#include "sve/arith/float/step.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class Step : public testing::Test {};
TYPED_TEST_SUITE(Step, formats);

TYPED_TEST(Step, InfinityTimesZeroCountsAsZeroWhateverTheSigns) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T minus_inf = v::minus + v::inf;
  check<T>(FPRecipStepFused, {
                                 {"infinity and 0", {v::inf, 0}, 0, num<T>(2), 0},
                                 {"-infinity and 0", {minus_inf, 0}, 0, num<T>(2), 0},
                                 {"0 and -infinity", {0, minus_inf}, 0, num<T>(2), 0},
                                 {"-0 and infinity", {v::minus, v::inf}, 0, num<T>(2), 0},
                                 {"infinity and flushed", {v::inf, v::tiny}, flush<T>, num<T>(2), flushed<T>},
                             });
  check<T>(FPRSqrtStepFused, {
                                 {"infinity and 0", {v::inf, v::minus}, 0, num<T>(1.5), 0},
                                 {"0 and -infinity", {0, minus_inf}, 0, num<T>(1.5), 0},
                             });
}

TYPED_TEST(Step, InfinitiesAndNaNsSeeTheFirstOperandNegated) {
  using T = TypeParam;
  using v = values<T>;
  for (const auto op : {FPRecipStepFused<T>, FPRSqrtStepFused<T>}) {
    check<T>(op, {
                     {"infinity", {v::inf, num<T>(2)}, 0, v::minus + v::inf, 0},
                     {"infinity second", {num<T>(-2), v::inf}, 0, v::inf, 0},
                     {"a quiet first", {v::quiet, v::nan}, 0, v::minus + v::quiet, 0},
                     {"a quiet second", {num<T>(1), v::quiet}, 0, v::quiet, 0},
                     {"a signalling first", {v::minus + v::signalling, 0}, 0, v::made_quiet, IOC},
                     {"a signalling second", {v::quiet, v::signalling}, 0, v::made_quiet, IOC},
                     {"DN", {v::quiet, 0}, DN, v::nan, 0},
                 });
  }
}

TYPED_TEST(Step, NumbersAreRoundedOnce) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPRecipStepFused, {
                                 {"2 - 1.5 * 0.5", {num<T>(1.5), num<T>(0.5)}, 0, num<T>(1.25), 0},
                                 {"2 + 1.5 * 0.5", {num<T>(-1.5), num<T>(0.5)}, 0, num<T>(2.75), 0},
                                 {"2 - 0", {0, num<T>(5)}, 0, num<T>(2), 0},
                                 {"2 - 2", {num<T>(2), num<T>(1)}, RM, v::minus, 0},
                                 {"2 - a speck", {v::tiny, num<T>(1)}, RZ, num<T>(2) - 1, IXC},
                                 {"2 - a flushed speck", {v::tiny, num<T>(1)}, flush<T>, num<T>(2), flushed<T>},
                                 {"overflow", {v::largest, v::largest}, 0, v::minus + v::inf, OFC | IXC},
                             });
  check<T>(FPRSqrtStepFused, {
                                 {"(3 - 1.5 * 0.5) / 2", {num<T>(1.5), num<T>(0.5)}, 0, num<T>(1.125), 0},
                                 {"(3 - 0) / 2", {0, num<T>(5)}, 0, num<T>(1.5), 0},
                                 {"(3 - 3) / 2", {num<T>(1.5), num<T>(2)}, RP, 0, 0},
                                 {"(3 - a speck) / 2", {num<T>(1), v::tiny}, RM, num<T>(1.5) - 1, IXC},
                                 {"halved before the rounding", {v::largest, num<T>(-2)}, 0, v::largest, IXC},
                             });
}

}  // namespace
}  // namespace quern
