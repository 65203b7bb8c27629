// Multiplication.
#include "sve/arith/float/multiply.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class Multiplication : public testing::Test {};
TYPED_TEST_SUITE(Multiplication, formats);

TYPED_TEST(Multiplication, InfinityTimesZeroIsTheDefaultNaNAndTwoInTheExtendedForm) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T minus_inf = v::minus + v::inf, minus_zero = v::minus;
  check<T>(FPMul, {
                      {"infinity times zero", {v::inf, 0}, 0, v::nan, IOC},
                      {"zero times minus infinity", {0, minus_inf}, 0, v::nan, IOC},
                      {"infinity times a flushed subnormal", {v::inf, v::tiny}, flush<T>, v::nan, IOC | flushed<T>},
                  });
  check<T>(FPMulX, {
                       {"infinity times zero", {v::inf, 0}, 0, num<T>(2), 0},
                       {"zero times minus infinity", {0, minus_inf}, 0, num<T>(-2), 0},
                       {"minus zero times minus infinity", {minus_zero, minus_inf}, 0, num<T>(2), 0},
                       {"infinity times a flushed subnormal", {v::inf, v::tiny}, flush<T>, num<T>(2), flushed<T>},
                       {"the same, negative", {v::minus + v::tiny, v::inf}, flush<T>, num<T>(-2), flushed<T>},
                       {"infinity times a subnormal", {v::inf, v::tiny}, other_flush<T>, v::inf, 0},
                   });
}

TYPED_TEST(Multiplication, BothFormsAgreeOnAllElse) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T one = num<T>(1), under = one - 1;
  for (const auto op : {FPMul<T>, FPMulX<T>}) {
    check<T>(op, {
                     {"exact", {num<T>(1.5), num<T>(-2.5)}, 0, num<T>(-3.75), 0},
                     {"infinity", {v::inf, num<T>(-2)}, 0, v::minus + v::inf, 0},
                     {"two infinities", {v::minus + v::inf, v::minus + v::inf}, 0, v::inf, 0},
                     {"zero", {v::minus, num<T>(2)}, 0, v::minus, 0},
                     {"a NaN before infinity and zero", {v::quiet, 0}, 0, v::quiet, 0},
                     {"a signalling second NaN", {v::quiet, v::signalling}, 0, v::made_quiet, IOC},
                     {"inexact, nearest", {one + 1, one + 1}, RN, one + 2, IXC},
                     {"inexact, up", {one + 1, one + 1}, RP, one + 3, IXC},
                     {"inexact, negative and down", {one + 1, v::minus + one + 1}, RM, v::minus + one + 3, IXC},
                     {"inexact, truncated", {one + 1, one + 1}, RZ, one + 2, IXC},
                     {"overflow", {v::largest, v::largest}, 0, v::inf, OFC | IXC},
                     {"overflow, truncated", {v::largest, num<T>(-2)}, RZ, v::minus + v::largest, OFC | IXC},
                     {"an exact subnormal", {v::smallest, num<T>(0.5)}, 0, v::smallest / 2, 0},
                     {"a subnormal made normal", {v::smallest / 2, num<T>(4)}, 0, 2 * v::smallest, 0},
                     {"up to the smallest normal", {v::smallest, under}, RN, v::smallest, UFC | IXC},
                     {"the same, flushed", {v::minus + v::smallest, under}, flush<T>, v::minus, UFC},
                     {"no half of the smallest", {v::tiny, num<T>(0.5)}, RN, 0, UFC | IXC},
                     {"half of the smallest, up", {v::tiny, num<T>(0.5)}, RP, v::tiny, UFC | IXC},
                     {"far below", {v::tiny, v::tiny}, RN, 0, UFC | IXC},
                 });
  }
}

}  // namespace
}  // namespace quern
