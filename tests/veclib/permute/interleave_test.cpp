// Interleaving, de-interleaving and transposing of vectors, and of predicates with all their bits.
#include "sve/veclib/permute/interleave.h"

#include <gtest/gtest.h>

#include "tests/veclib/library_values.h"

namespace {

using namespace quern::veclib;

using on_vectors = VecV(VecV, VecV, CpuContext*);
using on_predicates = PredV(PredV, PredV, CpuContext*);

// Where a result's element comes from: the source, 0 or 1, and the element there.
struct place {
  std::size_t source, element;
};

struct permutation {
  const char* name;
  on_vectors* vectors[4];
  on_predicates* predicates[4];
  place (*from)(std::size_t i, std::size_t lanes);
};

#define EACH_WIDTH(stem)                                                             \
#stem, {VecU8##stem##VV, VecU16##stem##VV, VecU32##stem##VV, VecU64##stem##VV }, { \
    VecP8##stem##PP, VecP16##stem##PP, VecP32##stem##PP, VecP64##stem##PP            \
  }
const permutation permutations[] = {
    {EACH_WIDTH(Zip1),
     [](std::size_t i, std::size_t) {
       return place{i % 2, i / 2};
     }},
    {EACH_WIDTH(Zip2),
     [](std::size_t i, std::size_t lanes) {
       return place{i % 2, lanes / 2 + i / 2};
     }},
    {EACH_WIDTH(Uzp1),
     [](std::size_t i, std::size_t lanes) {
       return place{2 * i / lanes, 2 * i % lanes};
     }},
    {EACH_WIDTH(Uzp2),
     [](std::size_t i, std::size_t lanes) {
       return place{2 * i / lanes, 2 * i % lanes + 1};
     }},
    {EACH_WIDTH(Trn1),
     [](std::size_t i, std::size_t) {
       return place{i % 2, i / 2 * 2};
     }},
    {EACH_WIDTH(Trn2),
     [](std::size_t i, std::size_t) {
       return place{i % 2, i / 2 * 2 + 1};
     }},
};
#undef EACH_WIDTH

class Interleave : public testing::TestWithParam<permutation> {};

INSTANTIATE_TEST_SUITE_P(, Interleave, testing::ValuesIn(permutations),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(Interleave, MovesWholeLanes) {
  std::mt19937_64 random(1);
  CpuContext ctx = context();
  const VecV sources[] = {random_vector(random), random_vector(random)};
  for (std::size_t code = 0; code != 4; ++code) {
    const std::size_t width = std::size_t{1} << code;
    const VecV result = GetParam().vectors[code](sources[0], sources[1], &ctx);
    for (std::size_t byte = 0; byte != VL_BYTES; ++byte) {
      const place from = GetParam().from(byte / width, VL_BYTES / width);
      EXPECT_EQ(result.bytes[byte], sources[from.source].bytes[from.element * width + byte % width]) << byte;
    }
  }
}

TEST_P(Interleave, MovesPredicatesElementsWithAllTheirBits) {
  std::mt19937_64 random(1);
  CpuContext ctx = context();
  const PredV sources[] = {random_predicate(random), random_predicate(random)};
  for (std::size_t code = 0; code != 4; ++code) {
    const std::size_t width = std::size_t{1} << code;
    const PredV result = GetParam().predicates[code](sources[0], sources[1], &ctx);
    for (std::size_t bit = 0; bit != VL_BYTES; ++bit) {
      const place from = GetParam().from(bit / width, VL_BYTES / width);
      EXPECT_EQ(is_active<std::uint8_t>(result, bit),
                is_active<std::uint8_t>(sources[from.source], from.element * width + bit % width))
          << bit;
    }
  }
}

TEST(Uzp2PP, OfBytesTakesOddBitsAndOfDoublewordsGroupsOfEight) {
  CpuContext ctx = context();
  EXPECT_EQ(VecP8Uzp2PP(predicate_of<std::uint8_t>({1, 2, 5}), PredV{}, &ctx), predicate_of<std::uint8_t>({0, 2}));
  EXPECT_EQ(VecP64Uzp2PP(predicate_of<std::uint8_t>({1, 8, 11}), PredV{}, &ctx), predicate_of<std::uint8_t>({0, 3}));
}

}  // namespace
