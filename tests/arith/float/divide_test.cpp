// Division: its special cases, and quotients against long division.
#include "sve/arith/float/divide.h"

#include "tests/arith/float/exact.h"

namespace quern {
namespace {

template <class T>
class Division : public testing::Test {};
TYPED_TEST_SUITE(Division, formats);

TYPED_TEST(Division, ByZeroAndByInfinity) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T minus_inf = v::minus + v::inf, one = num<T>(1);
  check<T>(FPDiv, {
                      {"1/0", {one, 0}, 0, v::inf, DZC},
                      {"1/-0", {one, v::minus}, 0, minus_inf, DZC},
                      {"0/0", {0, v::minus}, 0, v::nan, IOC},
                      {"infinity/0", {v::inf, v::minus}, 0, minus_inf, 0},
                      {"infinity/infinity", {v::inf, minus_inf}, 0, v::nan, IOC},
                      {"infinity/1", {minus_inf, one}, 0, minus_inf, 0},
                      {"0/1", {0, num<T>(-1)}, 0, v::minus, 0},
                      {"1/infinity", {one, minus_inf}, 0, v::minus, 0},
                      {"0/infinity", {0, v::inf}, 0, 0, 0},
                      {"a NaN", {0, v::quiet}, 0, v::quiet, 0},
                      {"1/a flushed subnormal", {one, v::tiny}, flush<T>, v::inf, DZC | flushed<T>},
                      {"0/a flushed subnormal", {0, v::tiny}, flush<T>, v::nan, IOC | flushed<T>},
                      {"a flushed subnormal/1", {v::minus + v::tiny, one}, flush<T>, v::minus, flushed<T>},
                  });
}

TYPED_TEST(Division, AtTheEndsOfTheRange) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPDiv, {
                      {"exact", {num<T>(7.5), num<T>(-2.5)}, 0, num<T>(-3), 0},
                      {"subnormals", {v::subnormal, v::subnormal}, 0, num<T>(1), 0},
                      {"an exact subnormal", {v::smallest, num<T>(2)}, 0, v::smallest / 2, 0},
                      {"half of the smallest", {v::tiny, num<T>(2)}, 0, 0, UFC | IXC},
                      {"half of the smallest, up", {v::tiny, num<T>(2)}, RP, v::tiny, UFC | IXC},
                      {"up to the smallest normal", {v::smallest - 1, num<T>(1) - 1}, RP, v::smallest, UFC | IXC},
                      {"below it, flushed", {v::smallest, num<T>(2)}, flush<T>, 0, UFC},
                      {"overflow", {v::largest, num<T>(-0.5)}, 0, v::minus + v::inf, OFC | IXC},
                      {"overflow, truncated", {v::largest, v::tiny}, RZ, v::largest, OFC | IXC},
                      {"as small as can be", {v::tiny, v::largest}, 0, 0, UFC | IXC},
                  });
}

// a / b by long division, to one bit more than the quotient needs; false where it isn't in the normal range.
template <class T>
bool divide_exactly(T a, T b, std::uint32_t mode, exact_result<T>& result) {
  using v = values<T>;
  const int sgn = (a ^ b) & v::minus ? 1 : 0;
  const parts<T> n(a & ~v::minus), d(b & ~v::minus);
  const int below_one = n.mnt < d.mnt;
  const int exp = n.exp - d.exp - below_one + float_format<T>::bias;
  if (!in_range<T>(exp)) return false;
  uint128 whole = 1, remainder = (n.mnt << below_one) - d.mnt;
  for (int i = 0; i != float_format<T>::fraction_bits; ++i) {
    remainder *= 2;
    whole *= 2;
    if (remainder >= d.mnt) ++whole, remainder -= d.mnt;
  }
  result = round_exactly<T>(sgn, exp, whole, in_halves(remainder, d.mnt), mode);
  return true;
}

template <class T>
int check_against_long_division(T a, T b) {
  int judged = 0;
  for (const std::uint32_t mode : {RN, RP, RM, RZ}) {
    exact_result<T> expected;
    if (!divide_exactly(a, b, mode, expected)) continue;
    ++judged;
    FPSCR fpscr{mode};
    EXPECT_EQ(FPDiv(a, b, fpscr), expected.value) << std::hex << +a << " / " << +b << " mode " << mode;
    EXPECT_EQ(fpscr.word ^ mode, static_cast<std::uint32_t>(expected.flags)) << std::hex << +a << " / " << +b;
  }
  return judged;
}

TYPED_TEST(Division, RandomQuotientsAreThoseOfLongDivision) {
  using T = TypeParam;
  std::mt19937_64 random(20);
  int judged = 0;
  for (int i = 0; i != 20000; ++i) {
    const auto a = static_cast<T>(random()), b = static_cast<T>(random());
    const T top = values<T>::inf, magnitude = static_cast<T>(~values<T>::minus);
    if ((a & magnitude) >= top || (b & magnitude) >= top || (a & magnitude) == 0 || (b & magnitude) == 0) continue;
    judged += check_against_long_division(a, b);
  }
  EXPECT_GT(judged, 20000);
}

// A dividend that leaves, bits places further down, a quotient next to a whole number: dividend * 2^bits is
// near (mod divisor). Halving modulo the odd divisor gives it.
inline uint128 near_whole(uint128 divisor, int near, int bits) {
  uint128 x = static_cast<uint128>(near);
  for (int i = 0; i != bits; ++i) x = (x % 2 == 0 ? x : x + divisor) / 2;
  return x;
}

// Quotients next to a representable number and, as often, next to halfway between two.
TYPED_TEST(Division, QuotientsNextToHalfwayAreThoseOfLongDivision) {
  using T = TypeParam;
  constexpr int bits = float_format<T>::fraction_bits;
  std::mt19937_64 random(21);
  int judged = 0;
  for (int i = 0; i != 2000; ++i) {
    const auto divisor = (random() & float_format<T>::fraction_mask) | float_format<T>::hidden_bit | 1;
    for (int near = 1; near != 4; ++near) {
      uint128 dividend = near_whole(divisor, near, bits + 1 + i % 2);
      if (i % 4 >= 2) dividend = divisor - dividend;  // the same on the other side
      while (dividend < float_format<T>::hidden_bit) dividend *= 2;
      judged += check_against_long_division(pack<T>(0, float_format<T>::bias, static_cast<mantissa<T>>(dividend)),
                                            pack<T>(i & 1, float_format<T>::bias, static_cast<mantissa<T>>(divisor)));
    }
  }
  EXPECT_EQ(judged, 2000 * 3 * 4);
}

}  // namespace
}  // namespace quern
