// The square root: its special cases, and roots against a search by bits.
#include "sve/arith/float/square_root.h"

#include "tests/arith/float/exact.h"

namespace quern {
namespace {

template <class T>
class SquareRoot : public testing::Test {};
TYPED_TEST_SUITE(SquareRoot, formats);

TYPED_TEST(SquareRoot, OfZerosNegativesAndInfinities) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPSqrt, {
                       {"-0", {v::minus}, 0, v::minus, 0},
                       {"+0", {0}, RM, 0, 0},
                       {"-1", {num<T>(-1)}, 0, v::nan, IOC},
                       {"infinity", {v::inf}, 0, v::inf, 0},
                       {"minus infinity", {v::minus + v::inf}, 0, v::nan, IOC},
                       {"a negative subnormal", {v::minus + v::tiny}, 0, v::nan, IOC},
                       {"a flushed negative subnormal", {v::minus + v::tiny}, flush<T>, v::minus, flushed<T>},
                       {"a negative NaN", {v::minus + v::quiet}, 0, v::minus + v::quiet, 0},
                   });
}

TYPED_TEST(SquareRoot, OfAPerfectSquareIsExact) {
  using T = TypeParam;
  check<T>(FPSqrt, {
                       {"1", {num<T>(1)}, 0, num<T>(1), 0},
                       {"4", {num<T>(4)}, RP, num<T>(2), 0},
                       {"2.25", {num<T>(2.25)}, RM, num<T>(1.5), 0},
                       {"1681", {num<T>(1681)}, RZ, num<T>(41), 0},
                   });
}

// The root of a positive finite number, a bit at a time.
template <class T>
exact_result<T> root_exactly(T a, std::uint32_t mode) {
  constexpr int bits = float_format<T>::fraction_bits;
  const parts<T> n(a);
  const int exponent = n.exp - float_format<T>::bias, odd = exponent & 1;
  const uint128 square = n.mnt << (bits + odd);
  uint128 whole = 0;
  for (uint128 bit = uint128{1} << bits; bit != 0; bit /= 2)
    if ((whole + bit) * (whole + bit) <= square) whole += bit;
  // whole + 1/2 squared is whole * whole + whole + 1/4: never hit exactly.
  const uint128 remainder = square - whole * whole;
  const int halves = remainder == 0 ? 0 : remainder <= whole ? 1 : 3;
  return round_exactly<T>(0, (exponent - odd) / 2 + float_format<T>::bias, whole, halves, mode);
}

template <class T>
void check_against_search(T a) {
  for (const std::uint32_t mode : {RN, RP, RM, RZ}) {
    const exact_result<T> expected = root_exactly(a, mode);
    FPSCR fpscr{mode};
    ASSERT_EQ(FPSqrt(a, fpscr), expected.value) << std::hex << +a << " mode " << mode;
    ASSERT_EQ(fpscr.word ^ mode, static_cast<std::uint32_t>(expected.flags)) << std::hex << +a;
  }
}

TEST(SquareRootOfHalf, OfEveryPositiveNumberIsThatOfTheSearch) {
  for (half a = 1; a != values<half>::inf; ++a) check_against_search(a);
}

TYPED_TEST(SquareRoot, RandomRootsAreThoseOfTheSearch) {
  using T = TypeParam;
  std::mt19937_64 random(22);
  for (int i = 0; i != 20000; ++i) {
    const auto a = static_cast<T>(random() % values<T>::inf);
    if (a != 0) check_against_search(a);
  }
}

TYPED_TEST(SquareRoot, RootsAroundPerfectSquaresAndOfPowersOfTwoAreThoseOfTheSearch) {
  using T = TypeParam;
  constexpr int bits = float_format<T>::fraction_bits;
  std::mt19937_64 random(23);
  for (int i = 0; i != 2000; ++i) {
    const std::uint64_t root = (random() >> 1 | 1ULL << 62) >> (63 - bits / 2);
    std::uint64_t square = root * root;
    int exponent = bits;
    while (square < float_format<T>::hidden_bit) square *= 2, --exponent;
    const T pattern = pack<T>(0, float_format<T>::bias + exponent % 2, static_cast<mantissa<T>>(square));
    for (const T a : {pattern, static_cast<T>(pattern - 1), static_cast<T>(pattern + 1)}) check_against_search(a);
  }
  for (T power = values<T>::smallest; power != values<T>::inf; power += values<T>::smallest) {
    for (const T a : {power, static_cast<T>(power - 1), static_cast<T>(power + 1)}) check_against_search(a);
  }
}

// Roots next to halfway. With a * 2^shift = r^2 + r + d, which is a / 4 of (2r + 1)^2 = 1 - 4d (mod 2^(shift + 2)), the
// root is near r + 1/2, and the nearer the smaller d. An odd square root modulo a power of two exists for even d, and
// is found a bit at a time.
inline std::uint64_t odd_root_modulo(std::uint64_t square, int bits) {
  std::uint64_t y = 1;
  for (int bit = 3; bit < bits; ++bit)
    if ((y * y ^ square) >> bit & 1) y += 1ULL << (bit - 1);
  return y;
}

TYPED_TEST(SquareRoot, RootsNextToHalfwayAreThoseOfTheSearch) {
  using T = TypeParam;
  constexpr int bits = float_format<T>::fraction_bits;
  int judged = 0;
  for (int d = -400; d <= 400; d += 2) {
    for (const int shift : {bits, bits + 1}) {
      const std::uint64_t modulus = 1ULL << (shift + 2), square = 1 - 4 * static_cast<std::uint64_t>(d);
      const std::uint64_t y = odd_root_modulo(square, shift + 2);
      for (const std::uint64_t candidate : {y, modulus - y, y + modulus / 2, modulus / 2 - y}) {
        const uint128 r = candidate % modulus / 2;
        const uint128 a = (r * r + r + static_cast<uint128>(d)) >> shift;
        if (a < float_format<T>::hidden_bit || a >= 2 * uint128{float_format<T>::hidden_bit}) continue;
        ASSERT_EQ(a << shift, r * r + r + static_cast<uint128>(d));
        check_against_search(pack<T>(0, float_format<T>::bias + (shift - bits), static_cast<mantissa<T>>(a)));
        ++judged;
      }
    }
  }
  EXPECT_GT(judged, 400);
}

}  // namespace
}  // namespace quern
