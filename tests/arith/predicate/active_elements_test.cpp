// First and last active elements, and the flags that a predicate result sets.
#include <gtest/gtest.h>

#include <initializer_list>
#include <random>

#include "sve/arith/predicate/predicate_support.h"
#include "tests/harness/library_context.h"

namespace {

using quern::library_context;

constexpr int element_sizes[] = {8, 16, 32, 64};

constexpr int count_of(int esize) { return VL_BITS / esize; }

PredV with_bits(std::initializer_list<int> bits) {
  PredV value{};
  for (const int bit : bits) value.words[bit / 64] |= std::uint64_t{1} << bit % 64;
  return value;
}

bool bit_of(const PredV& value, int bit) { return (value.words[bit / 64] >> bit % 64 & 1) != 0; }

// The predicate of these elements.
PredV elements(int esize, std::initializer_list<int> numbers) {
  PredV value{};
  for (const int n : numbers) value.words[n * esize / 8 / 64] |= std::uint64_t{1} << n * esize / 8 % 64;
  return value;
}

PredV all_elements(int esize) {
  PredV value{};
  for (int n = 0; n != count_of(esize); ++n) value.words[n * esize / 8 / 64] |= std::uint64_t{1} << n * esize / 8 % 64;
  return value;
}

constexpr std::uint32_t n = 8u << 28, z = 4u << 28, c = 2u << 28, v = 1u << 28, other_bits = 0x0FFFFFFF;
constexpr std::uint32_t nothing_set = z | c;

std::uint32_t flags_after(decltype(PredSetNZC) set, const PredV& mask, const PredV& result, int esize,
                          std::uint32_t nzcv = 0, std::uint32_t vl_units = VL_BITS / 64) {
  CpuContext ctx = library_context(vl_units, nzcv);
  set(mask, result, esize, &ctx);
  return ctx.nzcv;
}

std::uint32_t nzcv_of(const PredV& mask, const PredV& result, int esize) {
  return flags_after(PredSetNZCV, mask, result, esize, v);
}

TEST(FindActive, IsTheFirstOrLastActiveElementOrMinus1) {
  CpuContext ctx = library_context();
  for (const int esize : element_sizes) {
    const int top = count_of(esize) - 1;
    EXPECT_EQ(FindFirstActive(PredV{}, esize, &ctx), -1);
    EXPECT_EQ(FindLastActive(PredV{}, esize, &ctx), -1);
    EXPECT_EQ(FindFirstActive(elements(esize, {1, top}), esize, &ctx), 1);
    EXPECT_EQ(FindLastActive(elements(esize, {0, 1}), esize, &ctx), 1);
    for (int i = 0; i <= top; ++i) {
      EXPECT_EQ(FindFirstActive(elements(esize, {i}), esize, &ctx), i);
      EXPECT_EQ(FindLastActive(elements(esize, {i}), esize, &ctx), i);
    }
  }
}

TEST(FindActive, DoesNotSeeASetBitThatIsNotTheLowestOfAnElement) {
  CpuContext ctx = library_context();
  for (int bit = 0; bit != VL_BYTES; ++bit) {
    if (bit % 2 == 0) continue;
    EXPECT_EQ(FindFirstActive(with_bits({bit}), 16, &ctx), -1) << bit;
    EXPECT_EQ(FindLastActive(with_bits({bit}), 16, &ctx), -1) << bit;
  }
  EXPECT_EQ(FindFirstActive(with_bits({7}), 64, &ctx), -1);
}

TEST(FindActive, FindsNoneWhereThereAreNoElements) {
  CpuContext ctx = library_context(0), full = library_context();
  EXPECT_EQ(FindFirstActive(with_bits({0}), 8, &ctx), -1);
  EXPECT_EQ(FindLastActive(with_bits({0}), 8, &ctx), -1);
  EXPECT_EQ(FindFirstActive(with_bits({0}), 0, &full), -1);
  EXPECT_EQ(FindLastActive(with_bits({0}), 0, &full), -1);
}

TEST(FindActive, StaysWithinTheVectorLengthAndCountsAllBitsOfItsWord) {
  CpuContext one_unit = library_context(1), top_bit = library_context(1u << 31);
  EXPECT_EQ(FindLastActive(all_elements(8), 8, &one_unit), 7);
  EXPECT_EQ(FindLastActive(all_elements(32), 32, &one_unit), 1);
  EXPECT_EQ(FindLastActive(all_elements(64), 64, &top_bit), count_of(64) - 1);
}

TEST(PredSetNZCV, OfAnEmptyMaskIsNothingSet) {
  for (const int esize : element_sizes) EXPECT_EQ(nzcv_of(PredV{}, all_elements(esize), esize), nothing_set) << esize;
}

TEST(PredSetNZCV, OfAnEmptyResultIsNothingSet) {
  for (const int esize : element_sizes) EXPECT_EQ(nzcv_of(all_elements(esize), PredV{}, esize), nothing_set) << esize;
}

TEST(PredSetNZCV, OfTheFirstElementAloneHasNAndUnlessItIsTheLastTooC) {
  for (const int esize : element_sizes) {
    EXPECT_EQ(nzcv_of(all_elements(esize), elements(esize, {0}), esize), n | c) << esize;
    EXPECT_EQ(nzcv_of(elements(esize, {0}), elements(esize, {0}), esize), n) << esize;
  }
}

TEST(PredSetNZCV, LooksAtActiveElementsOnly) {
  for (const int esize : element_sizes) {
    const int top = count_of(esize) - 1;
    EXPECT_EQ(nzcv_of(all_elements(esize), all_elements(esize), esize), n) << esize;
    EXPECT_EQ(nzcv_of(all_elements(esize), elements(esize, {top}), esize), 0u) << esize;
    EXPECT_EQ(nzcv_of(elements(esize, {1}), elements(esize, {0}), esize), nothing_set) << esize;
    EXPECT_EQ(nzcv_of(elements(esize, {0, 1}), elements(esize, {0, top}), esize), top == 1 ? n : n | c) << esize;
  }
}

TEST(PredSetNZCV, NLooksAtOneBitAndCAndZAtAllOfAnElements) {
  const PredV mask = elements(16, {0, 1});
  EXPECT_EQ(nzcv_of(mask, with_bits({1}), 16), c);             // the first element's upper bit: not N, but not Z
  EXPECT_EQ(nzcv_of(mask, with_bits({3}), 16), 0u);            // the last one's: not C
  EXPECT_EQ(nzcv_of(mask, with_bits({0, 3}), 16), n);          // each where it counts
  EXPECT_EQ(nzcv_of(with_bits({0}), with_bits({7}), 64), 0u);  // the group has eight bits
  EXPECT_EQ(nzcv_of(with_bits({0}), with_bits({8}), 64), nothing_set);
}

TEST(PredSetNZC, LeavesV) {
  for (const std::uint32_t before : {std::uint32_t{0}, v}) {
    EXPECT_EQ(flags_after(PredSetNZC, all_elements(8), all_elements(8), 8, before), n | before);
    EXPECT_EQ(flags_after(PredSetNZC, PredV{}, all_elements(8), 8, before), nothing_set | before);
    EXPECT_EQ(flags_after(PredSetNZC, all_elements(8), all_elements(8), 8, before, 0), nothing_set | before);
  }
}

TEST(PredSetNC, LeavesZInAllCases) {
  for (const std::uint32_t before : {std::uint32_t{0}, z, v}) {
    EXPECT_EQ(flags_after(PredSetNC, all_elements(8), elements(8, {0}), 8, before), n | c | before);
    EXPECT_EQ(flags_after(PredSetNC, PredV{}, all_elements(8), 8, n | before), c | before);
    EXPECT_EQ(flags_after(PredSetNC, all_elements(8), all_elements(8), 8, n | before, 0), c | before);
  }
}

TEST(PredSetNCV, LeavesZAndClearsV) {
  EXPECT_EQ(flags_after(PredSetNCV, all_elements(8), elements(8, {0}), 8, z | v), n | c | z);
  EXPECT_EQ(flags_after(PredSetNCV, PredV{}, all_elements(8), 8, n | v), c);
}

TEST(PredSetFlags, KeepAllOtherBits) {
  for (const auto set : {PredSetNZC, PredSetNZCV, PredSetNC, PredSetNCV})
    EXPECT_EQ(flags_after(set, all_elements(32), all_elements(32), 32, other_bits), n | other_bits);
}

TEST(PredSetFlags, OfNoElementsAreNothingSet) {
  EXPECT_EQ(flags_after(PredSetNZCV, all_elements(8), all_elements(8), 8, n | v, 0), nothing_set);
  EXPECT_EQ(flags_after(PredSetNZCV, all_elements(8), all_elements(8), 0, n | v), nothing_set);
}

// The definition, element by element.
std::uint32_t flags_by_definition(const PredV& mask, const PredV& result, int esize) {
  const int w = esize / 8;
  bool any = false, first = false, last = false, found = false;
  for (int e = 0; e != count_of(esize); ++e) {
    if (!bit_of(mask, e * w)) continue;
    bool set = false;
    for (int k = 0; k != w; ++k) set |= bit_of(result, e * w + k);
    any |= set;
    last = set;
    if (!found) first = bit_of(result, e * w);
    found = true;
  }
  return any ? (first ? n : 0) | (last ? 0 : c) : nothing_set;
}

TEST(PredSetNZCV, AgreesWithTheDefinitionOnRandomPredicates) {
  std::mt19937_64 random(1);
  for (int round = 0; round != 2000; ++round) {
    PredV mask, result;
    for (std::uint64_t& word : mask.words) word = random() & random() & (round % 2 != 0 ? random() & random() : ~0ull);
    for (std::uint64_t& word : result.words) word = random() & random() & random() & random() & random();
    for (const int esize : element_sizes)
      ASSERT_EQ(nzcv_of(mask, result, esize), flags_by_definition(mask, result, esize)) << esize;
  }
}

}  // namespace
