// Handlers against definitions written apart from them, one element at a time: the same random states, every element
// size, every way that the destination can be a source.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "sve/state/cpu_state.h"
#include "tests/random_cases/random_registers.h"

namespace quern {

using elements = std::vector<std::uint64_t>;  // of a vector, zero-extended
using flags_of = std::vector<bool>;           // of a predicate, one for each element

inline std::size_t count_of(std::uint32_t size) { return static_cast<std::size_t>(VL_BYTES) >> size; }

inline elements read_elements(const unsigned char* z, std::uint32_t size) {
  elements all(count_of(size));
  for (std::size_t i = 0; i != all.size(); ++i) std::memcpy(&all[i], z + (i << size), std::size_t{1} << size);
  return all;
}

inline void write_elements(unsigned char* z, std::uint32_t size, const elements& all) {
  ASSERT_EQ(all.size(), count_of(size));
  for (std::size_t i = 0; i != all.size(); ++i) std::memcpy(z + (i << size), &all[i], std::size_t{1} << size);
}

inline flags_of read_flags(const unsigned char* p, std::uint32_t size) {
  flags_of all(count_of(size));
  for (std::size_t i = 0; i != all.size(); ++i) all[i] = p[i << size] % 2 == 1;
  return all;
}

// Each element as 1 or 0 in its whole width.
inline void write_flags(unsigned char* p, std::uint32_t size, const flags_of& all) {
  write_elements(p, size, elements(all.begin(), all.end()));
}

// The element as a signed number.
inline std::int64_t as_signed_number(std::uint64_t element, std::uint32_t size) {
  const std::uint64_t sign = std::uint64_t{1} << ((8u << size) - 1);
  return static_cast<std::int64_t>((element ^ sign) - sign);
}

// N, Z and C of a predicate result under a governing predicate, one element at a time; V is 0.
inline void define_flags(cpu_state& s, const flags_of& governing, const flags_of& result) {
  bool seen = false, n = false, z = true, c = true;
  for (std::size_t i = 0; i != governing.size(); ++i) {
    if (!governing[i]) continue;
    if (!seen) n = result[i];
    seen = true;
    if (result[i]) z = false;
    c = !result[i];
  }
  s.nzcv = s.nzcv % (std::uint64_t{1} << 28) + (s.nzcv >> 32 << 32) + n * (std::uint64_t{1} << 31) +
           z * (std::uint64_t{1} << 30) + c * (std::uint64_t{1} << 29);
}

// Operand records as thunks make them.
constexpr aarch64_z_reg z_reg(std::uint32_t num, std::uint32_t size) { return {num, size, z_none, z_none}; }
constexpr aarch64_z_reg z_both(std::uint32_t num, std::uint32_t size) { return {num, z_none, size, size}; }
constexpr aarch64_p_reg p_reg(std::uint32_t num, std::uint32_t size_or_qualifier) {
  return {num, size_or_qualifier, p_none, p_none};
}
constexpr aarch64_p_reg p_both(std::uint32_t num, std::uint32_t size) { return {num, p_none, size, size}; }
constexpr aarch64_i_reg x_reg(std::uint32_t num) { return {num, size_x, i_none, i_none}; }
constexpr aarch64_i_reg w_reg(std::uint32_t num) { return {num, size_w, i_none, i_none}; }
constexpr aarch64_i_reg x_both(std::uint32_t num) { return {num, i_none, size_x, size_x}; }
constexpr aarch64_i_reg w_both(std::uint32_t num) { return {num, i_none, size_w, size_w}; }

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

// One register file to start from, for elements of one size.
struct sample {
  const char* predicates;
  std::uint32_t size;
  cpu_state state;
};

// States of each size whose predicates 1 and 2 are all false, all true, alternating and random, with rubbish in all
// bits that carry no meaning; the other predicates, and all vectors, are random with corner values among them. The same
// on every platform and in every run.
const std::vector<sample>& samples();

// The first difference between two register files; empty when there is none.
std::string difference(const cpu_state& actual, const cpu_state& expected);

// Expects of every sample and choice of registers that handler(state, size, registers) answers DECODE_OK and changes
// what definition(state, size, registers) changes, and nothing else.
template <class Handler, class Definition>
void expect_agreement(std::string_view name, Handler handler, Definition definition) {
  for (const sample& s : samples())
    for (const registers& r : all_registers) {
      cpu_state actual = s.state, expected = s.state;
      EXPECT_EQ(handler(&actual, s.size, r), DECODE_OK);
      definition(expected, s.size, r);
      ASSERT_EQ(difference(actual, expected), "") << name << ", size " << s.size << ", predicates " << s.predicates
                                                  << ", d " << r.d << " g " << r.g << " n " << r.n << " m " << r.m;
    }
}

// Tests whose cases count the lanes of one vector length.
class vectors_of_2048_bits : public testing::Test {
 protected:
  void SetUp() override {
    if (VL_BITS != 2048) GTEST_SKIP() << "its cases count the lanes of 2048 bits";
  }
  cpu_state s{};
};

}  // namespace quern
