// Conversion from fixed-point integers.
#include "sve/arith/float/from_fixed.h"

#include "tests/arith/float/float_case.h"

namespace quern {
namespace {

struct from_fixed_case {
  const char* what;
  std::uint64_t value;
  int fbits;
  bool u;
  FPRounding rounding;
  std::uint32_t controls;
  std::uint64_t result;
  int flags;
};

template <class T>
void check_from_fixed(std::initializer_list<from_fixed_case> cases) {
  for (const from_fixed_case& c : cases) {
    FPSCR fpscr{c.controls};
    EXPECT_EQ(fplibFixedToFP<T>(c.value, c.fbits, c.u, c.rounding, fpscr), c.result) << c.what;
    EXPECT_EQ(fpscr.word, c.controls | static_cast<std::uint32_t>(c.flags)) << c.what;
  }
}

constexpr FPRounding N = FPRounding_TIEEVEN, P = FPRounding_POSINF, M = FPRounding_NEGINF, Z = FPRounding_ZERO;

template <class T>
class FromFixed : public testing::Test {};
TYPED_TEST_SUITE(FromFixed, formats);

TYPED_TEST(FromFixed, KeepsSmallIntegers) {
  using T = TypeParam;
  check_from_fixed<T>({
      {"zero is positive", 0, 0, false, M, RM, 0, 0},
      {"one", 1, 0, true, N, 0, num<T>(1), 0},
      {"minus one", ~0ULL, 0, false, N, 0, num<T>(-1), 0},
      {"-2000", 0 - 2000ULL, 0, false, N, 0, num<T>(-2000), 0},
      {"fraction bits", 3, 2, false, N, 0, num<T>(0.75), 0},
      {"-fraction bits", 0 - 3ULL, 2, false, N, 0, num<T>(-0.75), 0},
  });
}

TEST(FromFixed, RoundsAsAskedWhateverTheMode) {
  check_from_fixed<single>({
      {"a tie", 0x1000001, 0, true, N, RP, 0x4B800000, IXC},
      {"a tie to even", 0x1000003, 0, true, N, RZ, 0x4B800002, IXC},
      {"up", 0x1000001, 0, true, P, RZ, 0x4B800001, IXC},
      {"up, negative", 0 - 0x1000001ULL, 0, false, P, RZ, 0xCB800000, IXC},
      {"down", 0 - 0x1000001ULL, 0, false, M, RZ, 0xCB800001, IXC},
      {"truncated", 0x1FFFFFF, 0, true, Z, RP, 0x4BFFFFFF, IXC},
      {"all ones", ~0ULL, 0, true, N, 0, 0x5F800000, IXC},
      {"the smallest", 1ULL << 63, 0, false, N, 0, 0xDF000000, 0},
  });
  check_from_fixed<double_bits>({
      {"a sticky bit", (1ULL << 63) + (1ULL << 10) + 1, 0, true, N, 0, 0x43E0000000000001, IXC},
      {"a tie", (1ULL << 63) + (1ULL << 10), 0, true, N, 0, 0x43E0000000000000, IXC},
  });
}

TEST(FromFixed, OverflowsAHalf) {
  check_from_fixed<half>({
      {"65504", 65504, 0, true, N, 0, 0x7BFF, 0},
      {"100000", 100000, 0, true, N, 0, 0x7C00, OFC | IXC},
      {"-100000", 0 - 100000ULL, 0, false, N, 0, 0xFC00, OFC | IXC},
      {"100000, truncated", 100000, 0, true, Z, 0, 0x7BFF, OFC | IXC},
      {"AHP is for conversions between formats", 65536, 0, true, N, AHP, 0x7C00, OFC | IXC},
  });
}

TEST(FromFixed, FlushesUnderFZButNeverAHalf) {
  check_from_fixed<half>({
      {"2^-24", 1, 24, true, N, FZ16, 0x0001, 0},
      {"2^-24, FZ", 1, 24, true, N, FZ, 0x0001, 0},
      {"2^-25", 1, 25, true, P, FZ16, 0x0001, UFC | IXC},
  });
  check_from_fixed<single>({
      {"2^-130", 1, 130, true, N, 0, 0x00080000, 0},
      {"2^-130, FZ16", 1, 130, true, N, FZ16, 0x00080000, 0},
      {"-2^-130, FZ", ~0ULL, 130, false, N, FZ, 0x80000000, UFC},
  });
}

}  // namespace
}  // namespace quern
