// The fused multiply-add. The addend is the first operand.
#include "sve/arith/float/multiply_add.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
class FusedMultiplyAdd : public testing::Test {};
TYPED_TEST_SUITE(FusedMultiplyAdd, formats);

TYPED_TEST(FusedMultiplyAdd, AQuietNaNAddendDoesNotHideAnInvalidProduct) {
  using T = TypeParam;
  using v = values<T>;
  check<T>(FPMulAdd, {
                         {"zero times infinity", {v::quiet, 0, v::inf}, 0, v::nan, IOC},
                         {"infinity times zero", {v::minus + v::quiet, v::minus + v::inf, 0}, 0, v::nan, IOC},
                         {"under DN", {v::quiet, 0, v::inf}, DN, v::nan, IOC},
                         {"a flushed zero", {v::quiet, v::tiny, v::inf}, flush<T>, v::nan, IOC | flushed<T>},
                         {"finite factors", {v::minus + v::quiet, num<T>(2), num<T>(3)}, 0, v::minus + v::quiet, 0},
                         {"an infinite factor", {v::quiet, v::inf, num<T>(3)}, 0, v::quiet, 0},
                         {"a signalling addend", {v::signalling, 0, v::inf}, 0, v::made_quiet, IOC},
                     });
}

TYPED_TEST(FusedMultiplyAdd, Infinities) {
  using T = TypeParam;
  using v = values<T>;
  constexpr T one = num<T>(1), minus_inf = v::minus + v::inf;
  check<T>(FPMulAdd, {
                         {"infinity times zero", {one, v::inf, 0}, 0, v::nan, IOC},
                         {"cancelling", {v::inf, minus_inf, one}, 0, v::nan, IOC},
                         {"like", {v::inf, minus_inf, num<T>(-1)}, 0, v::inf, 0},
                         {"the addend", {minus_inf, one, one}, 0, minus_inf, 0},
                         {"the product", {one, minus_inf, one}, 0, minus_inf, 0},
                     });
}

TYPED_TEST(FusedMultiplyAdd, AnExactZeroIsPositiveButNegativeInMode2) {
  using T = TypeParam;
  using v = values<T>;
  for (const std::uint32_t mode : {RN, RP, RM, RZ}) {
    const T zero = mode == RM ? num<T>(-0.0) : num<T>(0.0);
    check<T>(FPMulAdd, {
                           {"cancellation", {num<T>(-6), num<T>(2), num<T>(3)}, mode, zero, 0},
                           {"opposite zeros", {0, v::minus, num<T>(1)}, mode, zero, 0},
                           {"like zeros", {v::minus, v::minus, num<T>(1)}, mode, v::minus, 0},
                           {"a zero addend", {v::minus, num<T>(2), num<T>(3)}, mode, num<T>(6), 0},
                           {"a zero product", {num<T>(7), v::minus, num<T>(3)}, mode, num<T>(7), 0},
                           {"a zero product of large exponent", {v::tiny, v::minus, v::largest}, mode, v::tiny, 0},
                       });
  }
}

TYPED_TEST(FusedMultiplyAdd, RoundsOnce) {
  using T = TypeParam;
  using v = values<T>;
  using format = float_format<T>;
  constexpr T one = num<T>(1);
  // (1 + e)^2 - (1 + 2e) is e^2, for the e of the last bit, here times 256.
  constexpr T square = pack<T>(0, format::bias + 8 - 2 * format::fraction_bits, 0);
  check<T>(FPMulAdd, {
                         {"the product's low bits survive",
                          {v::minus + num<T>(256) + 2, num<T>(16) + 1, num<T>(16) + 1},
                          0,
                          square,
                          0},
                         {"a tiny product, nearest", {one, v::tiny, num<T>(0.5)}, RN, one, IXC},
                         {"a tiny product, up", {one, v::tiny, num<T>(0.5)}, RP, one + 1, IXC},
                         {"a tiny product, down", {one, v::tiny, num<T>(0.5)}, RM, one, IXC},
                         {"a tiny negative product, down", {one, v::tiny, num<T>(-0.5)}, RM, one - 1, IXC},
                         {"a tiny negative product, truncated", {one, v::tiny, num<T>(-0.5)}, RZ, one - 1, IXC},
                         {"a huge addend", {v::largest, v::tiny, v::tiny}, RN, v::largest, IXC},
                         {"a huge addend, up", {v::largest, v::tiny, v::tiny}, RP, v::inf, OFC | IXC},
                         {"a tiny addend, up", {v::tiny, num<T>(1.5), num<T>(2)}, RP, num<T>(3) + 1, IXC},
                         {"an intermediate overflow", {v::minus + v::largest, v::largest, num<T>(2)}, 0, v::largest, 0},
                         {"an exact subnormal", {v::minus + v::smallest, v::smallest + 1, one}, 0, v::tiny, 0},
                         {"flushed result", {v::minus + v::smallest, v::smallest + 1, one}, flush<T>, 0, UFC},
                         {"flushed operand", {one, v::subnormal, one}, flush<T>, one, flushed<T>},
                     });
}

TEST(Fp32Muladd, ScalesBeforeItRoundsAndLeavesZerosAndInfinities) {
  int flags = 0;
  EXPECT_EQ(fp32_muladd(num<single>(1), num<single>(2), num<single>(3), -1, 0, &flags), num<single>(3.5));
  EXPECT_EQ(fp16_muladd(num<half>(1), num<half>(2), num<half>(3), 2, 0, &flags), num<half>(28));
  EXPECT_EQ(fp64_muladd(0x7FF0000000000000, 0, 0, -3, 0, &flags), 0x7FF0000000000000);
  EXPECT_EQ(fp64_muladd(0, 0, 0, 3, 0, &flags), 0);
  EXPECT_EQ(flags, 0);
  EXPECT_EQ(fp32_muladd(1, 0, 0, -1, 0, &flags), 0);
  EXPECT_EQ(flags, UFC | IXC);
}

}  // namespace
}  // namespace quern
