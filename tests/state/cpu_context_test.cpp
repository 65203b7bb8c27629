#include <gtest/gtest.h>

#include <cstring>

#include "sve/state/cpu_context.h"

namespace {

TEST(CpuContext, TakesWhatTheLibraryMaySee) {
  static cpu_state state{};
  state.nzcv = 0x1234'5678'9000'00FF;
  state.fpsr = 0xF800'009F;
  state.fpcr = 0xFFFF'FFFF;
  std::memset(state.ffr, 0, VL_BYTES);
  state.ffr[0] = 0x03;
  state.ffr[1] = 0xFE;
  state.ffr[9] = 0xFF;
  const CpuContext ctx = make_context(state);
  EXPECT_EQ(ctx.nzcv, 0x9000'00FFu);
  EXPECT_EQ(ctx.fpsr, 0xF800'009Fu);
  EXPECT_EQ(ctx.fpcr, 0x07C8'9F00u);
  EXPECT_EQ(ctx.vl_units, static_cast<std::uint32_t>(VL_BITS) / 64);
  EXPECT_EQ(ctx.ffr.words[0], 0x201u);
  for (std::size_t i = 1; i != std::size(ctx.ffr.words); ++i) EXPECT_EQ(ctx.ffr.words[i], 0u);
}

TEST(CpuContext, NoControlBitOutsideTheMaskReachesTheLibrary) {
  static cpu_state state{};
  for (int bit = 0; bit != 32; ++bit) {
    state.fpcr = std::uint32_t{1} << bit;
    EXPECT_EQ(make_context(state).fpcr, state.fpcr & 0x07C8'9F00) << "bit " << bit;
  }
}

// The library was called and touched nothing.
TEST(CpuContext, AnUntouchedContextStillNormalisesTheState) {
  static cpu_state state{};
  state.nzcv = 0xFFFF'FFFF'6000'0001;
  state.fpsr = 0x0800'0010;
  state.fpcr = 0xFFFF'FFFF;
  for (int i = 0; i != VL_BYTES; ++i) state.ffr[i] = i % 2 == 0 ? 0x03 : 0xFE;
  store_context(make_context(state), state);
  EXPECT_EQ(state.nzcv, 0x6000'0001u);
  EXPECT_EQ(state.fpsr, 0x0800'0010u);
  EXPECT_EQ(state.fpcr, 0xFFFF'FFFFu);
  for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(state.ffr[i], i % 2 == 0 ? 1 : 0) << "byte " << i;
}

TEST(CpuContext, ACallThatDoesNotLookAtFfrStillNormalisesIt) {
  static cpu_state state{};
  for (int i = 0; i != VL_BYTES; ++i) state.ffr[i] = static_cast<unsigned char>(7 * i);
  store_context<false>(make_context<false>(state), state);
  for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(state.ffr[i], i % 2) << "byte " << i;
}

TEST(CpuContext, BringsBackWhatTheLibraryChanged) {
  static cpu_state state{};
  state.fpcr = 0x0300'0000;
  CpuContext ctx = make_context(state);
  ctx.nzcv = 0xA000'0000;
  ctx.fpsr = 0x11;
  ctx.fpcr = 0x0040'0000;
  ctx.ffr.words[0] = 0x8001;
  store_context(ctx, state);
  EXPECT_EQ(state.nzcv, 0xA000'0000u);
  EXPECT_EQ(state.fpsr, 0x11u);
  EXPECT_EQ(state.fpcr, 0x0300'0000u);
  for (int i = 0; i != VL_BYTES; ++i) ASSERT_EQ(state.ffr[i], i == 0 || i == 15 ? 1 : 0) << "byte " << i;
}

}  // namespace
