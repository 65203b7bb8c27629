// Addition and subtraction.
#include "sve/arith/float/add.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class Addition : public testing::Test {};
TYPED_TEST_SUITE(Addition, formats);

TYPED_TEST(Addition, SubtractionOfEqualsIsPlusZeroButMinusZeroInMode2) {
  using T = TypeParam;
  for (const std::uint32_t mode : {RN, RP, RM, RZ}) {
    const T zero = mode == RM ? num<T>(-0.0) : num<T>(0.0);
    check<T>(FPSub, {
                        {"equals", {num<T>(1.5), num<T>(1.5)}, mode, zero, 0},
                        {"negative equals", {num<T>(-1.5), num<T>(-1.5)}, mode, zero, 0},
                        {"subnormal equals", {values<T>::subnormal, values<T>::subnormal}, mode, zero, 0},
                        {"+0 - +0", {num<T>(0.0), num<T>(0.0)}, mode, zero, 0},
                        {"-0 - +0", {num<T>(-0.0), num<T>(0.0)}, mode, num<T>(-0.0), 0},
                    });
    check<T>(FPAdd, {
                        {"opposites", {num<T>(1.5), num<T>(-1.5)}, mode, zero, 0},
                        {"+0 + -0", {num<T>(0.0), num<T>(-0.0)}, mode, zero, 0},
                        {"-0 + +0", {num<T>(-0.0), num<T>(0.0)}, mode, zero, 0},
                        {"-0 + -0", {num<T>(-0.0), num<T>(-0.0)}, mode, num<T>(-0.0), 0},
                        {"+0 + +0", {num<T>(0.0), num<T>(0.0)}, mode, num<T>(0.0), 0},
                    });
  }
}

TYPED_TEST(Addition, SumsAreRoundedOnceInEveryMode) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T one = num<T>(1);
  // -2^-bits_down of 1's last bit, and more by a fraction. Below 1 the last bit is worth half of that.
  const auto part = [](int bits_down, T fraction) {
    return pack<T>(1, float_format<T>::bias - float_format<T>::fraction_bits - bits_down, fraction);
  };
  check<T>(
      FPAdd,
      {
          {"exact", {num<T>(1.5), num<T>(2.25)}, 0, num<T>(3.75), 0},
          {"the smaller first", {num<T>(-0.5), num<T>(4)}, 0, num<T>(3.5), 0},
          {"a sign change", {num<T>(0.5), num<T>(-4)}, 0, num<T>(-3.5), 0},
          {"a speck, nearest", {one, v::tiny}, RN, one, IXC},
          {"a speck, up", {one, v::tiny}, RP, one + 1, IXC},
          {"a speck, down", {one, v::tiny}, RM, one, IXC},
          {"a speck, truncated", {one, v::tiny}, RZ, one, IXC},
          {"a negative speck, nearest", {one, v::minus + v::tiny}, RN, one, IXC},
          {"a negative speck, truncated", {one, v::minus + v::tiny}, RZ, one - 1, IXC},
          {"a negative speck, up", {v::minus + v::tiny, one}, RP, one, IXC},
          {"less a quarter of the last bit", {one, part(3, 0)}, RN, one, IXC},
          {"less half of it", {one, part(2, 0)}, RN, one, IXC},
          {"less three quarters of it", {one, part(2, float_format<T>::quiet_bit)}, RN, one - 1, IXC},
          {"to the smallest normal", {v::smallest - 1, v::tiny}, 0, v::smallest, 0},
          {"below it, exact", {v::smallest, v::minus + v::tiny}, 0, v::smallest - 1, 0},
          {"overflow", {v::largest, v::largest}, 0, v::inf, OFC | IXC},
          {"overflow, truncated", {v::minus + v::largest, v::minus + v::largest}, RZ, v::minus + v::largest, OFC | IXC},
      });
}

TYPED_TEST(Addition, InfinitiesAddUpAndCancelWithIOC) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T minus_inf = v::minus + v::inf;
  check<T>(FPAdd, {
                      {"like", {v::inf, v::inf}, 0, v::inf, 0},
                      {"opposite", {v::inf, minus_inf}, 0, v::nan, IOC},
                      {"the first", {minus_inf, num<T>(1)}, 0, minus_inf, 0},
                      {"the second", {num<T>(1), minus_inf}, 0, minus_inf, 0},
                  });
  check<T>(FPSub, {
                      {"like", {v::inf, v::inf}, 0, v::nan, IOC},
                      {"opposite", {v::inf, minus_inf}, 0, v::inf, 0},
                      {"the second", {num<T>(1), v::inf}, 0, minus_inf, 0},
                  });
}

TYPED_TEST(Addition, ANaNSubtrahendKeepsItsSign) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPSub, {
                      {"positive", {num<T>(1), v::quiet}, 0, v::quiet, 0},
                      {"negative", {num<T>(1), v::minus + v::quiet}, 0, v::minus + v::quiet, 0},
                  });
}

TYPED_TEST(Addition, AFlushedTermIsAZeroOfItsSign) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T minus_subnormal = v::minus + v::subnormal;
  check<T>(FPAdd, {
                      {"one", {v::subnormal, num<T>(1)}, flush<T>, num<T>(1), flushed<T>},
                      {"negative ones", {minus_subnormal, minus_subnormal}, flush<T>, num<T>(-0.0), flushed<T>},
                      {"not by the other bit", {v::subnormal, v::subnormal}, other_flush<T>, 2 * v::subnormal, 0},
                      {"a subnormal difference", {v::smallest + 1, v::minus + v::smallest}, flush<T>, 0, UFC},
                  });
}

}  // namespace
}  // namespace quern
