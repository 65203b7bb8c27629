// The exponential accelerator.
#include "sve/arith/float/exponential.h"

#include <cmath>

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class Exponential : public testing::Test {};
TYPED_TEST_SUITE(Exponential, formats);

TYPED_TEST(Exponential, IsAPowerOfTwoRoundedToNearest) {
  using T = TypeParam;
  constexpr int entries = sizeof(T) == 2 ? 32 : 64;
  for (int i = 0; i != entries; ++i) {
    const long double power = std::exp2(static_cast<long double>(i) / entries);
    const auto fraction = std::llround(std::ldexp(power - 1, float_format<T>::fraction_bits));
    const T a = static_cast<T>(float_format<T>::bias * entries + i);
    EXPECT_EQ(FPEXPA<T>(a), static_cast<T>(num<T>(1) + static_cast<T>(fraction))) << i;
  }
}

TYPED_TEST(Exponential, IgnoresWhatIsAboveTheExponent) {
  using T = TypeParam;
  constexpr int bits = (sizeof(T) == 2 ? 5 : 6) + float_format<T>::exponent_bits;
  constexpr T above = static_cast<T>(static_cast<T>(~T{0}) << bits);
  EXPECT_EQ(FPEXPA<T>(above), 0);
  EXPECT_EQ(FPEXPA<T>(static_cast<T>(~above)), FPEXPA<T>(static_cast<T>(~T{0})));
}

TEST(Exponential, OfSinglesHasOneAndTheRootOfTwo) {
  EXPECT_EQ(FPEXPA<single>(127 << 6), 0x3F800000U);
  EXPECT_EQ(FPEXPA<single>((127 << 6) + 32), 0x3F800000U | 0x3504F3);
}

}  // namespace
}  // namespace quern
