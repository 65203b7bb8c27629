#include "sve/handlers/predicate/predicate_flags.h"

#include <cstring>
#include <string_view>

#include "tests/harness/agreement.h"

namespace quern {
namespace {

template <class T>
struct instance {
  static constexpr std::uint32_t size = sizeof(T) == 1   ? size_b
                                        : sizeof(T) == 2 ? size_h
                                        : sizeof(T) == 4 ? size_s
                                                         : size_d;
};
template <class T>
class Ptest : public testing::Test {};
using widths =
    testing::Types<signed char, short, int, long, unsigned char, unsigned short, unsigned int, unsigned long>;
TYPED_TEST_SUITE(Ptest, widths);

TYPED_TEST(Ptest, AgreesWithItsDefinition) {
  const std::uint32_t size = instance<TypeParam>::size;
  const auto text = [](const unsigned char* p) { return reinterpret_cast<const char*>(p); };
  expect_agreement(
      "ptest",
      [&](cpu_state* s, std::uint32_t, registers r) {
        sve_ptest<TypeParam>(s, text(s->p[r.g]), text(s->p[r.m]));
        return DECODE_OK;
      },
      [&](cpu_state& s, std::uint32_t, registers r) {
        define_flags(s, read_flags(s.p[r.g], size), read_flags(s.p[r.m], size));
      });
}

TEST(PredicateTest, LooksAtBytes) {
  expect_agreement(
      "ptest",
      [](cpu_state* s, std::uint32_t, registers r) {
        return sve_ptest_pp(s, p_reg(r.g, p_unqualified), p_reg(r.n, size_b));
      },
      [](cpu_state& s, std::uint32_t, registers r) {
        define_flags(s, read_flags(s.p[r.g], size_b), read_flags(s.p[r.n], size_b));
      });
}

TEST(PredicateTest, WithNothingActiveIsZeroAndCarryWhateverIsTested) {
  cpu_state s{};
  std::memset(s.p[1], 1, VL_BYTES);
  sve_ptest_pp(&s, p_reg(0, p_unqualified), p_reg(1, size_b));
  EXPECT_EQ(s.nzcv, 0x60000000u);
}

TEST(PredicateTest, KeepsTheOtherBitsOfTheFlagsRegister) {
  cpu_state s{};
  s.nzcv = ~std::uint64_t{0};
  sve_ptest_pp(&s, p_reg(0, p_unqualified), p_reg(1, size_b));
  EXPECT_EQ(s.nzcv, 0xFFFFFFFF6FFFFFFFu);
}

// One predicate byte with other bits set is what its bit 0 is.
TEST(PredicateTest, LooksAtBit0Alone) {
  cpu_state s{};
  s.p[0][0] = 0xFE;
  s.p[0][1] = 0x03;
  s.p[1][1] = 0xFF;
  sve_ptest_pp(&s, p_reg(0, p_unqualified), p_reg(1, size_b));
  EXPECT_EQ(s.nzcv, 0x80000000u);
}

}  // namespace
}  // namespace quern
