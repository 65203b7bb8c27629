// Routines against definitions written apart from them: the same random states, every element size, every way that the
// destination can be a source.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sve/state/cpu_state.h"
#include "tests/harness/elements.h"
#include "tests/harness/operand_records.h"

namespace quern {

// The registers of one run: a number serves vectors and predicates alike, and so a destination predicate that is the
// governing one is among them.
struct registers {
  std::uint32_t d, g, n, m;
};
inline constexpr std::array<registers, 7> all_registers{{
    {0, 1, 2, 3},  // all different
    {1, 1, 2, 3},  // d is g
    {2, 1, 2, 3},  // d is n
    {3, 1, 2, 3},  // d is m
    {0, 1, 2, 2},  // n is m
    {0, 2, 2, 3},  // g is n
    {1, 1, 1, 1},  // all the same
}};

// Which elements of a governing predicate are active.
enum class lanes_on : std::uint8_t { none, all, alternate, random };

// One register file to start from, for elements of one size.
struct sample {
  std::uint32_t size;
  lanes_on active;
  cpu_state state;
};

// States of each size and choice of active lanes, two of each. Predicates 0, 1 and 2 have these lanes, with rubbish in
// all bits that carry no meaning; all else is random with corner values among it. In the second of the two, half of the
// elements of vectors 0 to 3 are values at which arithmetic changes its ways, so that two such meet often (the least
// number and -1, a count and the width). The same on every platform and in every run.
const std::vector<sample>& samples();

// The second of these states, for tests that want one.
const cpu_state& random_state(std::uint32_t size, lanes_on active);

// The first difference between two register files; empty when there is none.
std::string difference(const cpu_state& actual, const cpu_state& expected);

// "cmpeq, size h, random lanes, d 1 g 1 n 2 m 3".
std::string describe(std::string_view name, const sample& s, const registers& r);

// Expects of every sample of the sizes ("bhsd") and every choice of registers that routine(&state, size, registers)
// answers DECODE_OK and changes what definition(state, size, registers) changes, and nothing else. The routine may be a
// handler, a thunk with its word, or a library function between its conversions.
template <class Routine, class Definition>
void expect_agreement(std::string_view name, Routine routine, Definition definition, std::string_view sizes = "bhsd") {
  for (const sample& s : samples()) {
    if (sizes.find(size_letter(s.size)) == sizes.npos) continue;
    for (const registers& r : all_registers) {
      cpu_state actual = s.state, expected = s.state;
      EXPECT_EQ(routine(&actual, s.size, r), DECODE_OK);
      definition(expected, s.size, r);
      ASSERT_EQ(difference(actual, expected), "") << describe(name, s, r);
    }
  }
}

// N, Z and C of a predicate result under a governing predicate, one element at a time; V is 0.
void define_flags(cpu_state& s, const flags_of& governing, const flags_of& result);

// Tests whose cases count the lanes of one vector length.
class vectors_of_2048_bits : public testing::Test {
 protected:
  void SetUp() override {
    if (VL_BITS != 2048) GTEST_SKIP() << "its cases count the lanes of 2048 bits";
  }
  cpu_state s{};
};

}  // namespace quern
