// Counts by pattern: the library's functions, and the way of their words to a register.
#include "sve/veclib/predicate/element_count.h"

#include <gtest/gtest.h>

#include <memory>

#include "sve/decoder/sve_utils.h"
#include "tests/harness/library_context.h"

namespace {

using quern::library_context;

constexpr std::uint64_t all = 31, vl7 = 7, unallocated = 14;

TEST(CountVLSI, IsThePatternsLanesTimesTheFieldPlus1) {
  CpuContext ctx = library_context(4);
  EXPECT_EQ(VecU8CountVLSI(all, 0, &ctx), 32u);
  EXPECT_EQ(VecU16CountVLSI(all, 0, &ctx), 16u);
  EXPECT_EQ(VecU32CountVLSI(all, 0, &ctx), 8u);
  EXPECT_EQ(VecU64CountVLSI(all, 0, &ctx), 4u);
  EXPECT_EQ(VecU8CountVLSI(all, 15, &ctx), 32u * 16);
  EXPECT_EQ(VecU32CountVLSI(vl7, 2, &ctx), 21u);
  EXPECT_EQ(VecU64CountVLSI(vl7, 2, &ctx), 0u);
  EXPECT_EQ(VecU8CountVLSI(unallocated, 0, &ctx), 0u);
}

TEST(CountVLSI, Reads26BitsOfTheVectorLength) {
  CpuContext ctx = library_context(0xFC000002);
  EXPECT_EQ(VecU64CountVLSI(all, 0, &ctx), 2u);
}

// CNTB x0 and its like: bits 23 and 22 are the element size, 19 to 16 the multiplier, 9 to 5 the pattern.
constexpr unsigned int cnt_word(unsigned size, unsigned multiplier, unsigned pattern, unsigned rd) {
  return 0x0420E000 | size << 22 | (multiplier - 1) << 16 | pattern << 5 | rd;
}

TEST(CountVLSI, IsWhatTheWordsOfCntWrite) {
  const auto state = std::make_unique<cpu_state>();
  for (unsigned size = 0; size != 4; ++size) {
    const unsigned int word = cnt_word(size, 3, all, 26);
    ASSERT_NE(get_sve_handler(word), nullptr);
    EXPECT_EQ(get_sve_handler(word)(state.get(), word), DECODE_OK);
    EXPECT_EQ(state->x[26], 3u * (VL_BYTES >> size)) << size;
  }
}

TEST(CountVLSI, ToRegister31WritesNothing) {
  const auto state = std::make_unique<cpu_state>();
  state->sp = 0x1111;
  const unsigned int word = cnt_word(2, 1, all, 31);
  EXPECT_EQ(get_sve_handler(word)(state.get(), word), DECODE_OK);
  EXPECT_EQ(state->sp, 0x1111u);
  for (const std::uint64_t x : state->x) EXPECT_EQ(x, 0u);
}

TEST(CountVLSI, PassesTheFlagsAndFfrThroughTheContext) {
  const auto state = std::make_unique<cpu_state>();
  state->nzcv = 0xABCD0000F0000000;
  state->ffr[0] = 0xFE;
  state->ffr[1] = 0x03;
  const unsigned int word = cnt_word(0, 1, all, 0);
  EXPECT_EQ(get_sve_handler(word)(state.get(), word), DECODE_OK);
  EXPECT_EQ(state->nzcv, 0xF0000000u);
  EXPECT_EQ(state->ffr[0], 0);
  EXPECT_EQ(state->ffr[1], 1);
}

}  // namespace
