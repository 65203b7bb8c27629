// Operations on the sign alone.
#include "sve/arith/float/sign.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class Sign : public testing::Test {};
TYPED_TEST_SUITE(Sign, formats);

TYPED_TEST(Sign, SignsAreClearedAndFlippedOnAnything) {
  using T = TypeParam;
  using v = values<T>;
  for (const T positive : {T{0}, v::tiny, num<T>(1), v::inf, v::quiet, v::signalling}) {
    const auto negative = static_cast<T>(v::minus + positive);
    EXPECT_EQ(FPAbs(positive), positive);
    EXPECT_EQ(FPAbs(negative), positive);
    EXPECT_EQ(FPNeg(positive), negative);
    EXPECT_EQ(FPNeg(negative), positive);
  }
}

}  // namespace
}  // namespace quern
