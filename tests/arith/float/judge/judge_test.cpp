// The floating-point library against the processor's own instructions, value and FPSR bit by bit. Options: --whole
// judges all pairs of halves and many more random cases, which takes long.
#include <gtest/gtest.h>
#include <sys/auxv.h>
#include <sys/prctl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/arith/float/judge/deviations.h"
#include "tests/arith/float/judge/judge.h"
#include "tests/arith/float/judge/tables.h"

namespace quern::judge {
namespace {

// How much is judged.
struct extent {
  std::uint32_t half_pair_step;  // 1: all 2^32 pairs
  std::uint64_t random_cases;    // of each routine
};
constexpr extent sample{4096, 30'000}, whole{1, 10'000'000};
extent chosen = sample;

constexpr std::uint32_t half_pair_slices = 4;

// All settings of the rounding mode, and of each of `controls`.
std::vector<std::uint32_t> settings(std::initializer_list<std::uint32_t> controls) {
  std::vector<std::uint32_t> list;
  for (std::uint32_t mode = 0; mode != 4; ++mode) list.push_back(mode << FPSCR_RMode_shift);
  for (const std::uint32_t control : controls)
    for (std::size_t i = 0, size = list.size(); i != size; ++i) list.push_back(list[i] | control);
  return list;
}

// Those that matter to the operands' format; conversions heed all that their results' does.
const std::vector<std::uint32_t>& settings_of(const routine& r) {
  static const auto of_half = settings({FPSCR_FZ16, FPSCR_DN}), of_others = settings({FPSCR_FZ, FPSCR_DN}),
                    of_one_half = settings({FPSCR_FZ16, FPSCR_DN, FPSCR_AHP}),
                    of_one_other = settings({FPSCR_FZ, FPSCR_FZ16, FPSCR_DN, FPSCR_AHP});
  const bool half = bits_of_kind(r.kinds[0]) == 16;
  if (r.kinds.size() == 1) return half ? of_one_half : of_one_other;
  return half ? of_half : of_others;
}

// Those that formats other than the operands' heed, one by one.
constexpr std::uint32_t other_controls[] = {FPSCR_FZ, FPSCR_FZ16, FPSCR_AHP};

const std::vector<routine>& routines() {
  static const auto all = [] {
    std::vector<routine> list = arithmetic_routines();
    for (const auto& more : {conversion_routines(), helper_routines()})
      list.insert(list.end(), more.begin(), more.end());
    return list;
  }();
  return all;
}

// Not the steps, which are fused multiply-adds with one operand fixed.
std::vector<routine> half_pair_routines() {
  std::vector<routine> list;
  for (const routine& r : arithmetic_routines()) {
    const bool is_step = r.name.starts_with("frecps") || r.name.starts_with("frsqrts");
    if (r.kinds.size() == 2 && r.kinds[0] == operand_kind::half && !is_step) list.push_back(r);
  }
  return list;
}

std::string test_name(std::string name) {
  std::ranges::replace_if(
      name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name;
}

class Routine : public testing::TestWithParam<routine> {};

// Every half of a routine of one operand, under all settings.
TEST_P(Routine, EqualsTheProcessorOnCornerValues) {
  const routine& r = GetParam();
  const auto& values_of = r.kinds.size() == 1 ? dense_values : r.kinds.size() == 2 ? corner_values : few_corner_values;
  std::vector<const std::vector<std::uint64_t>*> lists;
  for (const operand_kind kind : r.kinds) lists.push_back(&values_of(kind));
  for (const std::uint32_t fpcr : settings_of(r)) judge_cross(r, fpcr, lists);
  for (const std::uint32_t fpcr : other_controls) judge_cross(r, fpcr, lists);
}

TEST_P(Routine, EqualsTheProcessorOnRandomCases) {
  const routine& r = GetParam();
  const auto& all = settings_of(r);
  std::uint64_t seed = hash_text(r.name);
  for (const std::uint32_t fpcr : all) judge_random(r, fpcr, chosen.random_cases / all.size(), ++seed);
}

INSTANTIATE_TEST_SUITE_P(All, Routine, testing::ValuesIn(routines()),
                         [](const auto& each) { return test_name(each.param.name); });

class HalfPairs : public testing::TestWithParam<std::tuple<routine, std::uint32_t>> {};

TEST_P(HalfPairs, EqualTheProcessorInNearestMode) {
  const auto& [r, slice] = GetParam();
  judge_half_pairs(r, 0, chosen.half_pair_step, slice, half_pair_slices);
}

INSTANTIATE_TEST_SUITE_P(
    All, HalfPairs, testing::Combine(testing::ValuesIn(half_pair_routines()), testing::Range(0U, half_pair_slices)),
    [](const auto& each) {
      return test_name(std::get<0>(each.param).name) + "_" + std::to_string(std::get<1>(each.param));
    });

TEST(Corners, AreEnough) {
  for (const operand_kind kind : {operand_kind::half, operand_kind::single, operand_kind::dbl}) {
    EXPECT_GE(corner_values(kind).size(), 200u);
    EXPECT_GE(few_corner_values(kind).size(), 40u);
  }
}

TEST(Deviations, AreAllStillThere) {
  for (const deviation& d : known_deviations()) {
    const auto r = std::ranges::find_if(routines(), [&](const routine& each) { return concerns(d, each); });
    ASSERT_NE(r, routines().end()) << d.routines;
    outcome software, processor;
    r->software({&d.example, 1}, d.controls, &software);
    r->processor({&d.example, 1}, d.controls, &processor);
    EXPECT_NE(software, processor) << d.routines;
    EXPECT_TRUE(d.applies(d.example, software, processor)) << d.routines;
  }
}

// Vectors as short as can be: only their first element is looked at.
void shorten_vectors() {
#ifndef PR_SVE_SET_VL
  constexpr int PR_SVE_SET_VL = 50;
#endif
  prctl(PR_SVE_SET_VL, 16);
}

bool has_instructions() {
  constexpr unsigned long scalar_half = 1UL << 9, vector_half = 1UL << 10, sve = 1UL << 22;  // HWCAP bits
  constexpr unsigned long needed = scalar_half | vector_half | sve;
  return (getauxval(AT_HWCAP) & needed) == needed;
}

}  // namespace
}  // namespace quern::judge

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (!quern::judge::has_instructions()) {
    std::printf("Left out: this processor has no half-precision arithmetic or no SVE.\n");
    return 77;
  }
  if (argc == 2 && std::string_view(argv[1]) == "--whole") {
    quern::judge::chosen = quern::judge::whole;
  } else if (argc != 1) {
    std::fprintf(stderr, "usage: %s [--whole]\n", argv[0]);
    return EXIT_FAILURE;
  }
  quern::judge::shorten_vectors();
  const int result = RUN_ALL_TESTS();
  std::printf("%llu cases judged\n", static_cast<unsigned long long>(quern::judge::cases_judged()));
  return result;
}
