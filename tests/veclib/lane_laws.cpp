// Judging families by laws of one lane.
#include "tests/veclib/lane_laws.h"

#include <gtest/gtest.h>

#include <random>

#include "sve/state/lanes.h"
#include "sve/veclib/predicate_lanes.h"
#include "tests/harness/elements.h"

namespace quern {
namespace {

constexpr int rounds = 300;

// A value at which arithmetic on lanes of this width changes its ways, or any.
std::uint64_t telling_value(std::mt19937_64& random, int width) {
  const std::uint64_t top = std::uint64_t{1} << (width - 1), any = random();
  switch (any % 16) {
    case 0: return 0;
    case 1: return ~std::uint64_t{0};
    case 2: return top;
    case 3: return top - 1;
    case 4: return any >> 8 & 127;  // a count
    case 5: return static_cast<std::uint64_t>(width);
    case 6: return 1;
    default: return random();
  }
}

std::uint32_t size_of(int width) {
  return static_cast<std::uint32_t>(std::bit_width(static_cast<unsigned>(width)) - 4);
}

// All pairs of bytes, in 256 rounds for vectors of 256 bytes, in more for shorter ones.
void set_byte_pairs(library_operands& operands, int round) {
  for (int i = 0; i != VL_BYTES; ++i) {
    operands.vectors[0].bytes[i] = static_cast<unsigned char>(i + round / 256 * VL_BYTES);
    operands.vectors[1].bytes[i] = static_cast<unsigned char>(round);
  }
}

lane_view view_of(const library_operands& operands, const library_member& member, std::size_t i) {
  const std::uint32_t size = size_of(member.width());
  const auto at = [&](int v) { return element(operands.vectors[v].bytes, size, i); };
  return {at(0),
          at(1),
          at(2),
          element(operands.vectors[1].bytes, size_d, i * static_cast<unsigned>(member.width()) / 64),
          operands.scalars[0],
          member.width(),
          member.is_unsigned() ? 1 : 0};
}

// The letters of a class that has a governing predicate end with M; those of Rev don't tell.
bool is_predicated(std::string_view stem) { return stem.ends_with('M') || stem.starts_with("Rev"); }

void judge_round(const lane_law& law, const library_member& member, const library_operands& operands) {
  CpuContext ctx = library_context();
  const std::uint32_t size = size_of(member.width());
  const VecV result = member(operands, ctx).vector;
  const flags_of active = read_flags(operands.predicates[0], size);
  for (std::size_t i = 0; i != count_of(size); ++i) {
    const lane_view x = view_of(operands, member, i);
    const std::uint64_t expected =
        !is_predicated(law.stem) || active[i] ? low_bits(static_cast<unsigned>(member.width()), law.lane(x)) : x.a;
    ASSERT_EQ(element(result.bytes, size, i), expected)
        << std::hex << "lane " << i << " of " << x.a << ", " << x.b << ", " << x.c << ", " << x.scalar;
  }
}

}  // namespace

library_operands random_operands(int width, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  library_operands operands{};
  for (VecV& vector : operands.vectors)
    for (std::size_t i = 0; i != count_of(size_of(width)); ++i)
      set_element(vector.bytes, size_of(width), i, telling_value(random, width));
  for (PredV& predicate : operands.predicates)
    for (std::uint64_t& word : predicate.words) word = random();
  for (std::uint64_t& scalar : operands.scalars) scalar = random();
  // Where doublewords stand beside narrower lanes, half of them are small.
  for (std::size_t i = 0; width != 64 && seed % 2 != 0 && i < lane_count<std::uint64_t>; i += 2)
    set_element(operands.vectors[1].bytes, size_d, i, telling_value(random, 8) % 256);
  return operands;
}

void judge_lanes(const lane_law& law, const std::vector<std::uint64_t>& scalars) {
  for (const library_member& member : members_of(law.stem)) {
    SCOPED_TRACE(member.name);
    for (int round = 0; round != rounds; ++round) {
      library_operands operands = random_operands(member.width(), static_cast<std::uint64_t>(round));
      if (member.width() == 8) set_byte_pairs(operands, round);
      operands.scalars[0] = scalars[static_cast<std::size_t>(round) % scalars.size()];
      judge_round(law, member, operands);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

}  // namespace quern
