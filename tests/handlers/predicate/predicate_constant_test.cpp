#include "sve/handlers/predicate/predicate_constant.h"

#include <algorithm>
#include <cstring>

#include "sve/state/predicate_pattern.h"
#include "tests/harness/agreement.h"

namespace quern {
namespace {

// Elements named by a pattern at each size, B, H, S, D, in a vector of 2048 bits.
constexpr struct {
  std::uint32_t pattern;
  std::array<std::uint32_t, 4> counts;
} patterns_of_2048_bits[] = {
    {0, {256, 128, 64, 32}}, {1, {1, 1, 1, 1}},        {2, {2, 2, 2, 2}},        {3, {3, 3, 3, 3}},
    {4, {4, 4, 4, 4}},       {5, {5, 5, 5, 5}},        {6, {6, 6, 6, 6}},        {7, {7, 7, 7, 7}},
    {8, {8, 8, 8, 8}},       {9, {16, 16, 16, 16}},    {10, {32, 32, 32, 32}},   {11, {64, 64, 64, 0}},
    {12, {128, 128, 0, 0}},  {13, {256, 0, 0, 0}},     {14, {0, 0, 0, 0}},       {15, {0, 0, 0, 0}},
    {16, {0, 0, 0, 0}},      {17, {0, 0, 0, 0}},       {18, {0, 0, 0, 0}},       {19, {0, 0, 0, 0}},
    {20, {0, 0, 0, 0}},      {21, {0, 0, 0, 0}},       {22, {0, 0, 0, 0}},       {23, {0, 0, 0, 0}},
    {24, {0, 0, 0, 0}},      {25, {0, 0, 0, 0}},       {26, {0, 0, 0, 0}},       {27, {0, 0, 0, 0}},
    {28, {0, 0, 0, 0}},      {29, {256, 128, 64, 32}}, {30, {255, 126, 63, 30}}, {31, {256, 128, 64, 32}},
};

class PatternsOf2048Bits : public vectors_of_2048_bits {};

TEST_F(PatternsOf2048Bits, NameAsManyElementsAsTheTableSays) {
  for (const auto& [pattern, counts] : patterns_of_2048_bits)
    for (std::uint32_t size = size_b; size <= size_d; ++size)
      EXPECT_EQ(pattern_count(pattern, size), counts[size]) << "pattern " << pattern << ", size " << size;
}

// At any length: a fixed number that fits, or multiples of the vector's own number.
TEST(Patterns, FollowTheVectorLength) {
  for (std::uint32_t size = size_b; size <= size_d; ++size) {
    const auto all = static_cast<std::uint32_t>(count_of(size));
    const std::uint32_t fixed[] = {all, 1, 2, 3, 4, 5, 6, 7, 8, 16, 32, 64, 128, 256};
    for (std::uint32_t pattern = 1; pattern <= 13; ++pattern)
      EXPECT_EQ(pattern_count(pattern, size), fixed[pattern] > all ? 0 : fixed[pattern]) << pattern;
    for (std::uint32_t pattern = 14; pattern <= 28; ++pattern) EXPECT_EQ(pattern_count(pattern, size), 0u) << pattern;
    EXPECT_EQ(pattern_count(0, size), all);
    EXPECT_EQ(pattern_count(29, size), all / 4 * 4);
    EXPECT_EQ(pattern_count(30, size), all / 3 * 3);
    EXPECT_EQ(pattern_count(31, size), all);
  }
}

TEST(PredicateConstant, PtrueSetsThePatternsElementsAndClearsTheRest) {
  for (std::uint32_t pattern = 0; pattern != 32; ++pattern)
    expect_agreement(
        "ptrue",
        [&](cpu_state* s, std::uint32_t size, registers r) { return sve_ptrue_pi(s, p_reg(r.d, size), pattern); },
        [&](cpu_state& s, std::uint32_t size, registers r) {
          flags_of all(count_of(size));
          std::fill_n(all.begin(), pattern_count(pattern, size), true);
          write_flags(s.p[r.d], size, all);
        });
}

TEST(PredicateConstant, PfalseClearsEveryByte) {
  expect_agreement(
      "pfalse", [](cpu_state* s, std::uint32_t, registers r) { return sve_pfalse_p(s, p_reg(r.d, size_b)); },
      [](cpu_state& s, std::uint32_t, registers r) { write_flags(s.p[r.d], size_b, flags_of(count_of(size_b))); });
}

class PtrueOf2048Bits : public vectors_of_2048_bits {};

TEST_F(PtrueOf2048Bits, CountsLikeTheArchitecture) {
  constexpr struct {
    const char* text;
    std::uint32_t size, pattern;
    std::ptrdiff_t set;
  } cases[] = {
      {"ptrue p0.d, vl64", size_d, 11, 0}, {"ptrue p0.b, vl256", size_b, 13, 256}, {"ptrue p0.s, mul3", size_s, 30, 63},
      {"pattern 14", size_b, 14, 0},       {"pattern 28", size_b, 28, 0},
  };
  for (const auto& c : cases) {
    std::memset(s.p[0], 0xFF, VL_BYTES);
    sve_ptrue_pi(&s, p_reg(0, c.size), c.pattern);
    EXPECT_EQ(std::count(s.p[0], s.p[0] + VL_BYTES, 1), c.set) << c.text;
    EXPECT_EQ(std::count(s.p[0], s.p[0] + VL_BYTES, 0), VL_BYTES - c.set) << c.text;
  }
}

}  // namespace
}  // namespace quern
