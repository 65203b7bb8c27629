#include "sve/handlers/predicate/element_count.h"

#include <cstring>

#include "sve/state/predicate_pattern.h"
#include "tests/harness/agreement.h"
#include "tests/random_cases/random_registers.h"

namespace quern {
namespace {

struct scalar_case {
  const char* name;
  handler_rii& handler;
  std::uint32_t size;
};

// Each pattern with a small and the greatest multiplier, on registers with odd values and number 31.
template <class Definition>
void expect_scalar_agreement(const scalar_case& c, bool w, Definition definition) {
  random_source random(2);
  cpu_state s;
  fill_registers(random, size_b, false, s);
  s.x[0] = 100;
  s.x[1] = 0xFFFFFFFF00000300;
  for (std::uint32_t pattern = 0; pattern != 32; ++pattern)
    for (const std::uint32_t multiplier : {1u, 3u, 16u})
      for (const std::uint32_t num : {0u, 1u, 2u, 30u, 31u}) {
        cpu_state actual = s, expected = s;
        EXPECT_EQ(c.handler(&actual, w ? w_both(num) : x_both(num), pattern, multiplier), DECODE_OK);
        if (num != 31) expected.x[num] = definition(s.x[num], pattern, multiplier);
        ASSERT_EQ(difference(actual, expected), "") << c.name << " x" << num << " pattern " << pattern;
      }
}

TEST(ElementCount, IncrementsAndDecrementsByThePattern) {
  const scalar_case up[] = {{"incb", sve_incb_rii, size_b},
                            {"inch", sve_inch_rii, size_h},
                            {"incw", sve_incw_rii, size_s},
                            {"incd", sve_incd_rii, size_d}};
  const scalar_case down[] = {{"decb", sve_decb_rii, size_b},
                              {"dech", sve_dech_rii, size_h},
                              {"decw", sve_decw_rii, size_s},
                              {"decd", sve_decd_rii, size_d}};
  for (const auto& c : up)
    expect_scalar_agreement(c, false, [&](std::uint64_t x, std::uint32_t pattern, std::uint32_t multiplier) {
      return x + pattern_count(pattern, c.size) * multiplier;
    });
  for (const auto& c : down)
    expect_scalar_agreement(c, false, [&](std::uint64_t x, std::uint32_t pattern, std::uint32_t multiplier) {
      return x - pattern_count(pattern, c.size) * multiplier;
    });
}

TEST(ElementCount, SaturatingDecrementEndsAtZeroInItsWidth) {
  const scalar_case cases[] = {
      {"uqdecb", sve_uqdecb_rii, size_b}, {"uqdecw", sve_uqdecw_rii, size_s}, {"uqdecd", sve_uqdecd_rii, size_d}};
  for (const auto& c : cases)
    for (const bool w : {false, true})
      expect_scalar_agreement(c, w, [&](std::uint64_t x, std::uint32_t pattern, std::uint32_t multiplier) {
        const std::uint64_t count = pattern_count(pattern, c.size) * multiplier, value = w ? x & 0xFFFFFFFF : x;
        return value < count ? 0 : value - count;
      });
}

TEST(ElementCount, CountIgnoresThePattern) {
  const scalar_case cases[] = {{"cntb", sve_cntb_rii, size_b},
                               {"cnth", sve_cnth_rii, size_h},
                               {"cntw", sve_cntw_rii, size_s},
                               {"cntd", sve_cntd_rii, size_d}};
  for (const auto& c : cases)
    expect_scalar_agreement(c, false, [&](std::uint64_t, std::uint32_t, std::uint32_t multiplier) {
      return count_of(c.size) * multiplier;
    });
}

TEST(ElementCount, OfAVectorMovesEveryElement) {
  struct {
    const char* name;
    handler_zii& handler;
    std::uint32_t size;
    bool up;
  } const cases[] = {
      {"inch", sve_inch_zii, size_h, true},  {"incw", sve_incw_zii, size_s, true},
      {"incd", sve_incd_zii, size_d, true},  {"dech", sve_dech_zii, size_h, false},
      {"decw", sve_decw_zii, size_s, false}, {"decd", sve_decd_zii, size_d, false},
  };
  for (const auto& c : cases)
    for (const std::uint32_t pattern : {0u, 7u, 9u, 13u, 20u, 30u, 31u})
      expect_agreement(
          c.name,
          [&](cpu_state* s, std::uint32_t, registers r) { return c.handler(s, z_both(r.d, c.size), pattern, 16); },
          [&](cpu_state& s, std::uint32_t, registers r) {
            elements all = read_elements(s.z[r.d], c.size);
            const std::uint64_t change = pattern_count(pattern, c.size) * 16;
            for (auto& element : all) element = c.up ? element + change : element - change;
            write_elements(s.z[r.d], c.size, all);
          });
}

std::uint64_t define_count(const flags_of& a, const flags_of& b) {
  std::uint64_t count = 0;
  for (std::size_t i = 0; i != a.size(); ++i) count += a[i] && b[i];
  return count;
}

TEST(ElementCount, OfPredicatesAgreesWithTheirElements) {
  for (const std::uint32_t num : {6u, 31u}) {
    expect_agreement(
        "cntp",
        [&](cpu_state* s, std::uint32_t size, registers r) {
          return sve_cntp_rpp(s, x_reg(num), p_reg(r.g, p_unqualified), p_reg(r.n, size));
        },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          if (num != 31) s.x[num] = define_count(read_flags(s.p[r.g], size), read_flags(s.p[r.n], size));
        });
    expect_agreement(
        "incp",
        [&](cpu_state* s, std::uint32_t size, registers r) { return sve_incp_rp(s, x_both(num), p_reg(r.n, size)); },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          const flags_of all = read_flags(s.p[r.n], size);
          if (num != 31) s.x[num] += define_count(all, all);
        });
  }
}

TEST(ElementCount, OfAPredicateLooksAtTheFirstByteOfEachElement) {
  cpu_state s{};
  std::memset(s.p[0], 1, VL_BYTES);
  for (int i = 0; i != VL_BYTES; ++i) s.p[1][i] = i % 8 != 0;
  sve_cntp_rpp(&s, x_reg(0), p_reg(0, p_unqualified), p_reg(1, size_d));
  EXPECT_EQ(s.x[0], 0u);
}

class ElementCountOf2048Bits : public vectors_of_2048_bits {};

TEST_F(ElementCountOf2048Bits, MovesX0) {
  constexpr std::uint32_t vl64 = 11, mul3 = 30, all = 31;
  const struct {
    const char* text;
    handler_rii& handler;
    aarch64_i_reg reg;
    std::uint32_t pattern, multiplier;
    std::uint64_t before, after;
  } cases[] = {
      {"incd x0, vl64", sve_incd_rii, x_both(0), vl64, 1, 7, 7},
      {"incb x0, vl64", sve_incb_rii, x_both(0), vl64, 1, 7, 71},
      {"incw x0, all, mul #16", sve_incw_rii, x_both(0), all, 16, 7, 1031},
      {"incd x0, mul3", sve_incd_rii, x_both(0), mul3, 1, 7, 37},
      {"incb x0, mul3", sve_incb_rii, x_both(0), mul3, 1, 7, 262},
      {"decb xzr, all", sve_decb_rii, x_both(31), all, 1, 7, 7},
      {"decb x0, all, below zero", sve_decb_rii, x_both(0), all, 1, 0, 0xFFFFFFFFFFFFFF00},
      {"uqdecb w0, all, of 100", sve_uqdecb_rii, w_both(0), all, 1, 100, 0},
      {"uqdecb w0, all, of 300", sve_uqdecb_rii, w_both(0), all, 1, 300, 44},
      {"uqdecb w0 clears the upper half", sve_uqdecb_rii, w_both(0), all, 1, 0x700000000 + 300, 44},
      {"uqdecb x0 keeps the upper half", sve_uqdecb_rii, x_both(0), all, 1, 0x700000000 + 300, 0x700000000 + 44},
  };
  for (const auto& c : cases) {
    s.x[0] = c.before;
    const std::uint64_t sp = s.sp;
    c.handler(&s, c.reg, c.pattern, c.multiplier);
    EXPECT_EQ(s.x[0], c.after) << c.text;
    EXPECT_EQ(s.sp, sp) << c.text;
  }
}

}  // namespace
}  // namespace quern
