// Which NaN comes back: the same selection in every operation.
#include "sve/arith/float/nan.h"

#include "sve/arith/float/add.h"
#include "sve/arith/float/multiply_add.h"
#include "sve/arith/float/square_root.h"
#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class NanSelection : public testing::Test {};
TYPED_TEST_SUITE(NanSelection, formats);

TYPED_TEST(NanSelection, OneNaNIsMadeQuietAndKeepsSignAndPayload) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPSqrt, {
                       {"quiet", {v::quiet}, 0, v::quiet, 0},
                       {"quiet, negative", {v::minus + v::quiet}, 0, v::minus + v::quiet, 0},
                       {"signalling", {v::minus + v::signalling}, 0, v::minus + v::made_quiet, IOC},
                       {"quiet under DN", {v::minus + v::quiet}, DN, v::nan, 0},
                       {"signalling under DN", {v::minus + v::signalling}, DN, v::nan, IOC},
                   });
}

TYPED_TEST(NanSelection, OfTwoNaNsASignallingOneWinsAndThenTheFirst) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPAdd,
           {
               {"two quiet", {v::quiet, v::nan}, 0, v::quiet, 0},
               {"two quiet, swapped", {v::nan, v::quiet}, 0, v::nan, 0},
               {"a signalling second", {v::quiet, v::minus + v::signalling}, 0, v::minus + v::made_quiet, IOC},
               {"a signalling first", {v::signalling, v::inf + 1}, 0, v::made_quiet, IOC},
               {"a quiet second", {num<T>(1), v::minus + v::quiet}, 0, v::minus + v::quiet, 0},
               {"DN gives the positive default", {v::minus + v::quiet, v::minus + v::signalling}, DN, v::nan, IOC},
               {"DN and quiet", {v::minus + v::quiet, v::minus + v::quiet}, DN, v::nan, 0},
               {"before infinities", {v::inf, v::quiet}, 0, v::quiet, 0},
               {"after flushing", {v::quiet, v::subnormal}, flush<T>, v::quiet, flushed<T>},
           });
}

TYPED_TEST(NanSelection, OfThreeNaNsASignallingOneWinsAndThenTheFirst) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T a = v::nan + 1, b = v::nan + 2, c = v::nan + 4;
  constexpr T sa = v::inf + 1, sb = v::inf + 2, sc = v::inf + 4;
  check<T>(FPMulAdd, {
                         {"quiet", {a, b, c}, 0, a, 0},
                         {"b and c", {num<T>(1), b, c}, 0, b, 0},
                         {"c", {num<T>(1), num<T>(1), c}, 0, c, 0},
                         {"a signals", {sa, sb, sc}, 0, a, IOC},
                         {"b signals", {a, sb, sc}, 0, b, IOC},
                         {"c signals", {a, b, sc}, 0, c, IOC},
                         {"c signals under DN", {a, b, sc}, DN, v::nan, IOC},
                     });
}

}  // namespace
}  // namespace quern
