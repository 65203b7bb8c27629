// Scaling by powers of two.
#include "sve/arith/float/scale.h"

#include <limits>

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

template <class T>
struct scaled_case {
  const char* what;
  T a;
  std::int64_t n;
  std::uint32_t controls;
  T result;
  int flags;
};

std::uint16_t scale(std::uint16_t a, std::int64_t n, FPSCR& s) { return FPScale16(a, static_cast<std::int16_t>(n), s); }
std::uint32_t scale(std::uint32_t a, std::int64_t n, FPSCR& s) { return FPScale32(a, static_cast<std::int32_t>(n), s); }
std::uint64_t scale(std::uint64_t a, std::int64_t n, FPSCR& s) { return FPScale64(a, n, s); }

template <class T>
void check_scale(std::initializer_list<scaled_case<T>> cases) {
  for (const scaled_case<T>& c : cases) {
    FPSCR fpscr{c.controls};
    EXPECT_EQ(scale(c.a, c.n, fpscr), c.result) << c.what << " in " << 8 * sizeof(T) << " bits";
    EXPECT_EQ(fpscr.word, c.controls | static_cast<std::uint32_t>(c.flags)) << c.what;
  }
}

template <class T>
class Scale : public testing::Test {};
TYPED_TEST_SUITE(Scale, formats);

TYPED_TEST(Scale, OverflowsAndUnderflowsHoweverFarTheScale) {
  using T = TypeParam;
  using v = values<T>;
  using integer = std::make_signed_t<T>;
  constexpr T one = num<T>(1);
  constexpr std::int64_t most = std::numeric_limits<integer>::max(), least = std::numeric_limits<integer>::min();
  check_scale<T>({
      {"most", one, most, 0, v::inf, OFC | IXC},
      {"most of the least", v::tiny, most, 0, v::inf, OFC | IXC},
      {"most, truncated", v::minus + one, most, RZ, v::minus + v::largest, OFC | IXC},
      {"least", one, least, 0, 0, UFC | IXC},
      {"least of the most", v::minus + v::largest, least, 0, v::minus, UFC | IXC},
      {"least, up", one, least, RP, v::tiny, UFC | IXC},
      {"least, flushed", v::minus + one, least, flush<T>, v::minus, UFC},
  });
}

TYPED_TEST(Scale, IsExactWithinTheFormat) {
  using T = TypeParam;
  using v = values<T>;
  constexpr int bias = v::format::bias, m = v::format::fraction_bits;
  constexpr T one = num<T>(1);
  check_scale<T>({
      {"by 1", num<T>(-1.5), 3, 0, num<T>(-12), 0},
      {"by 1/4", num<T>(1.25), -2, 0, num<T>(0.3125), 0},
      {"to the smallest subnormal", one, 1 - bias - m, 0, v::tiny, 0},
      {"half of it, a tie", one, -bias - m, 0, 0, UFC | IXC},
      {"from it", v::tiny, bias + m - 1, 0, one, 0},
      {"subnormal to subnormal", v::tiny, 2, 0, 4, 0},
      {"inexact", v::subnormal, -1, RZ, v::subnormal / 2, UFC | IXC},
      {"the other flush control", v::tiny, 1, other_flush<T>, 2, 0},
  });
}

TYPED_TEST(Scale, KeepsZerosAndInfinitiesAndQuietsNans) {
  using T = TypeParam;
  using v = values<T>;
  check_scale<T>({
      {"-0", v::minus, 5, 0, v::minus, 0},
      {"-infinity", v::minus + v::inf, -9, 0, v::minus + v::inf, 0},
      {"flushed", v::minus + v::tiny, 5, flush<T>, v::minus, flushed<T>},
      {"quiet", v::minus + v::quiet, 5, 0, v::minus + v::quiet, 0},
      {"signalling", v::signalling, 5, 0, v::made_quiet, IOC},
      {"DN", v::minus + v::quiet, 5, DN, v::nan, 0},
  });
}

TEST(Scale, OfOneBy2To31OverflowsAsBy300) {
  check_scale<single>({
      {"300", 0x3F800000, 300, 0, 0x7F800000, OFC | IXC},
      {"2^31 - 1", 0x3F800000, 0x7FFFFFFF, 0, 0x7F800000, OFC | IXC},
      {"-149", 0x3F800000, -149, 0, 1, 0},
  });
}

}  // namespace
}  // namespace quern
