// Every integer reduction, for all its types.
#include "sve/veclib/integer/reduce.h"

#include <gtest/gtest.h>

#include "sve/arith/integer/bit_support.h"
#include "tests/harness/elements.h"
#include "tests/veclib/lane_laws.h"

namespace {

using namespace quern;

// A fold of lanes from `start` on, of which the low result_width bits are the result (0: the lane's width).
struct reduction {
  std::string_view stem;
  int result_width;
  std::uint64_t (*start)(int width, int is_unsigned);
  std::uint64_t (*fold)(std::uint64_t folded, std::uint64_t lane, int width, int is_unsigned);
};

const reduction reductions[] = {
    {"AddReduceV", 64, [](int, int) -> std::uint64_t { return 0; },
     [](std::uint64_t folded, std::uint64_t lane, int width, int u) { return folded + bits(Int(lane, width, u)); }},
    {"AndReduceV", 0, [](int, int) { return ~std::uint64_t{0}; },
     [](std::uint64_t folded, std::uint64_t lane, int, int) { return folded & lane; }},
    {"OrReduceV", 0, [](int, int) -> std::uint64_t { return 0; },
     [](std::uint64_t folded, std::uint64_t lane, int, int) { return folded | lane; }},
    {"XorReduceV", 0, [](int, int) -> std::uint64_t { return 0; },
     [](std::uint64_t folded, std::uint64_t lane, int, int) { return folded ^ lane; }},
    {"MaxReduceV", 0, [](int width, int u) { return u == 1 ? 0 : std::uint64_t{1} << (width - 1); }, Max},
    {"MinReduceV", 0, [](int width, int u) { return ~std::uint64_t{0} >> (64 - width + (u == 1 ? 0 : 1)); }, Min},
};

std::uint64_t expected(const reduction& law, const library_member& member, const library_operands& operands) {
  const auto bytes = static_cast<std::size_t>(member.width()) / 8;
  std::uint64_t folded = law.start(member.width(), member.is_unsigned());
  for (std::size_t i = 0; i != VL_BYTES / bytes; ++i) {
    if ((operands.predicates[0].words[i * bytes / 64] >> i * bytes % 64 & 1) == 0) continue;
    const std::uint64_t lane = element_at(operands.vectors[0].bytes + i * bytes, bytes);
    folded = law.fold(folded, lane, member.width(), member.is_unsigned());
  }
  return low_bits(law.result_width == 0 ? member.width() : law.result_width, folded);
}

TEST(Reduce, FoldsActiveLanesForAllTypes) {
  for (const reduction& law : reductions) {
    for (const library_member& member : members_of(law.stem)) {
      for (std::uint64_t round = 0; round != 200; ++round) {
        library_operands operands = random_operands(member.width(), round);
        if (round % 8 == 0) operands.predicates[0] = {};
        CpuContext ctx = library_context();
        ASSERT_EQ(member(operands, ctx).scalar, expected(law, member, operands)) << member.name;
      }
    }
  }
}

TEST(Reduce, AddsSignedLanesIn64Bits) {
  CpuContext ctx = library_context();
  PredV all;
  for (std::uint64_t& word : all.words) word = ~std::uint64_t{0};
  VecV a{};
  for (unsigned char& byte : a.bytes) byte = 0x80;
  EXPECT_EQ(VecS8AddReduceV(all, a, &ctx), 0 - std::uint64_t{128} * VL_BYTES);
  EXPECT_EQ(VecU8AddReduceV(all, a, &ctx), std::uint64_t{128} * VL_BYTES);
}

}  // namespace
