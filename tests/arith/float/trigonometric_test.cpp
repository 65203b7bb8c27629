// The trigonometric accelerator.
#include "sve/arith/float/trigonometric.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T, std::uint64_t i>
T multiply_add(T a, T b, FPSCR& fpscr) {
  return FPTRIMADD<T>(i, a, b, fpscr);
}

template <class T>
class Trigonometric : public testing::Test {};
TYPED_TEST_SUITE(Trigonometric, formats);

TYPED_TEST(Trigonometric, MultiplyAddTakesTheCosinesCoefficientForANegativeB) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(multiply_add<T, 0>, {
                                   {"1 + 2 * 3", {num<T>(2), num<T>(3)}, 0, num<T>(7), 0},
                                   {"1 + 2 * |-3|", {num<T>(2), num<T>(-3)}, 0, num<T>(7), 0},
                                   {"1 + -2 * |-3|", {num<T>(-2), num<T>(-3)}, 0, num<T>(-5), 0},
                                   {"1 + a speck, up", {v::tiny, num<T>(1)}, RP, num<T>(1) + 1, IXC},
                               });
  check<T>(multiply_add<T, 1>, {
                                   {"-1/2 + 2 * |-3|", {num<T>(2), num<T>(-3)}, 0, num<T>(5.5), 0},
                                   {"-1/2 + 0 * |-0|", {0, v::minus}, 0, num<T>(-0.5), 0},
                               });
}

TYPED_TEST(Trigonometric, MultiplyAddLooksForNansInTheOrderCoefficientAAndB) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(multiply_add<T, 2>, {
                                   {"both quiet", {v::quiet, v::nan}, 0, v::quiet, 0},
                                   {"a negative b loses its sign", {0, v::minus + v::quiet}, 0, v::quiet, 0},
                                   {"a negative a keeps it", {v::minus + v::quiet, 0}, 0, v::minus + v::quiet, 0},
                                   {"b signalling", {v::quiet, v::signalling}, 0, v::made_quiet, IOC},
                                   {"infinity times zero", {v::inf, v::minus}, 0, v::nan, IOC},
                                   {"flushed", {v::inf, v::tiny}, flush<T>, v::nan, IOC | flushed<T>},
                               });
}

TEST(Trigonometric, MultiplyAddHasTheCoefficientsOfEachFormat) {
  FPSCR none{};
  const auto sine = [&]<class T>(std::uint64_t i, T) { return FPTRIMADD<T>(i, 0, 0, none); };
  const auto cosine = [&]<class T>(std::uint64_t i, T) { return FPTRIMADD<T>(i, 0, values<T>::minus, none); };
  EXPECT_EQ(sine(1, half{}), 0xB155);
  EXPECT_EQ(sine(2, half{}), 0x2030);
  EXPECT_EQ(sine(3, half{}), 0);
  EXPECT_EQ(cosine(2, half{}), 0x293A);
  EXPECT_EQ(sine(4, single{}), 0x36369D6DU);
  EXPECT_EQ(cosine(4, single{}), 0x37CD37CCU);
  EXPECT_EQ(cosine(5, single{}), 0U);
  EXPECT_EQ(sine(6, double_bits{}), 0x3DE5D8408868552FU);
  EXPECT_EQ(sine(7, double_bits{}), 0U);
  EXPECT_EQ(cosine(7, double_bits{}), 0xBDA8F76380FBB401U);
}

TEST(Trigonometric, MultiplyAddOfSinglesAtIndexSevenIsTheProductAlone) {
  constexpr single minus_zero = values<single>::minus;
  for (const single b : {num<single>(3), num<single>(-3)})
    check<single>(multiply_add<single, 7>, {{"a product", {num<single>(-2), b}, 0, num<single>(-6), 0}});
  check<single>(multiply_add<single, 7>, {
                                             {"0 + 0", {0, 0}, RM, 0, 0},
                                             {"0 - 0", {minus_zero, num<single>(3)}, RN, 0, 0},
                                             {"0 - 0, down", {minus_zero, num<single>(3)}, RM, minus_zero, 0},
                                         });
}

TYPED_TEST(Trigonometric, SquareHasBit0OfBForItsSign) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPTRISMUL<T>, {
                             {"b 1", {num<T>(3), 1}, 0, num<T>(-9), 0},
                             {"b 2", {num<T>(-3), 2}, 0, num<T>(9), 0},
                             {"b all but bit 0", {num<T>(3), static_cast<T>(~T{1})}, 0, num<T>(9), 0},
                             {"infinity", {v::minus + v::inf, 0}, 0, v::inf, 0},
                             {"-infinity", {v::inf, 1}, 0, v::minus + v::inf, 0},
                             {"zero", {v::minus, 0}, 0, 0, 0},
                             {"-zero", {0, 3}, 0, v::minus, 0},
                             {"flushed", {v::tiny, 1}, flush<T>, v::minus, flushed<T>},
                             {"not flushed", {v::tiny, 1}, other_flush<T>, v::minus, UFC | IXC},
                         });
}

TYPED_TEST(Trigonometric, SquareIsRoundedAsAPositiveNumber) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPTRISMUL<T>, {
                             {"overflow, down", {v::largest, 1}, RM, v::minus + v::largest, OFC | IXC},
                             {"overflow, up", {v::largest, 1}, RP, v::minus + v::inf, OFC | IXC},
                             {"1 and a bit, up", {num<T>(1) + 1, 1}, RP, v::minus + num<T>(1) + 3, IXC},
                             {"1 and a bit, down", {num<T>(1) + 1, 1}, RM, v::minus + num<T>(1) + 2, IXC},
                         });
}

TYPED_TEST(Trigonometric, SquareOfANanKeepsItsSign) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPTRISMUL<T>, {
                             {"quiet", {v::quiet, 1}, 0, v::quiet, 0},
                             {"negative quiet", {v::minus + v::quiet, 0}, 0, v::minus + v::quiet, 0},
                             {"signalling", {v::signalling, 1}, 0, v::made_quiet, IOC},
                             {"DN", {v::minus + v::quiet, 1}, DN, v::nan, 0},
                         });
}

}  // namespace
}  // namespace quern
