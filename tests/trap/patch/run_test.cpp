// The registers that words use.
#include "sve/trap/patch/run.h"

#include <gtest/gtest.h>

#include <array>

#include "sve/decoder/decode_map.h"

namespace quern {
namespace {

struct usage {
  const char* text;
  std::uint32_t word;
  register_use wanted;
};

constexpr std::uint32_t bit(int n) { return std::uint32_t{1} << n; }

constexpr usage words[] = {
    {"add z3.b, z4.b, z5.b", 0x04250083, {.z = bit(3) | bit(4) | bit(5), .z_written = bit(3)}},
    {"add z3.b, p0/m, z3.b, z5.b", 0x040000A3, {.z = bit(3) | bit(5), .z_written = bit(3)}},
    {"ld1b {z7.b}, p0/z, [x1, x2]", 0xA4024027, {.z = bit(7), .z_written = bit(7)}},
    {"st1b {z7.b}, p0, [x1, x2]", 0xE4024027, {.z = bit(7)}},
    {"ld4b {z30.b, z31.b, z0.b, z1.b}, p0/z, [x1]",
     0xA460E03E,
     {.z = bit(30) | bit(31) | bit(0) | bit(1), .z_written = bit(30) | bit(31) | bit(0) | bit(1)}},
    {"st2w {z31.s, z0.s}, p0, [sp]", 0xE530E3FF, {.z = bit(31) | bit(0)}},
    {"whilelo p1.b, x2, x3", 0x25231C41, {}},
    {"incb x5", 0x0430E3E5, {.x_written = bit(5)}},
    {"addvl sp, sp, #-1", 0x043F57FF, {.sp_written = true}},
    {"addvl x7, sp, #1", 0x043F5027, {.x_written = bit(7)}},
    {"cntp xzr, p0, p1.b", 0x2520803F, {}},
    {"fadd z1.s, z2.s, z3.s", 0x65830041, {.z = bit(1) | bit(2) | bit(3), .z_written = bit(1), .floating_point = true}},
    {"str p3, [x4]", 0xE5800083, {}},
};

TEST(RegisterUse, FollowsFromTheOperands) {
  for (const usage& u : words) {
    const decode_row* const row = decode_word(u.word).row;
    ASSERT_NE(row, nullptr) << u.text;
    const register_use use = use_of(run_word{u.word, row, row->thunk});
    EXPECT_EQ(use.z, u.wanted.z) << u.text;
    EXPECT_EQ(use.z_written, u.wanted.z_written) << u.text;
    EXPECT_EQ(use.x_written, u.wanted.x_written) << u.text;
    EXPECT_EQ(use.sp_written, u.wanted.sp_written) << u.text;
    EXPECT_EQ(use.floating_point, u.wanted.floating_point) << u.text;
  }
}

TEST(RegisterUse, OfARunIsThatOfAllItsWords) {
  std::array<run_word, 3> run;
  std::size_t count = 0;
  for (const std::uint32_t word : {0x04250083u, 0x65830041u, 0x0430E3E5u}) run[count++] = {word, decode_word(word).row, nullptr};
  const register_use use = use_of(run);
  EXPECT_EQ(use.z, 0x3Eu);
  EXPECT_EQ(use.z_written, bit(3) | bit(1));
  EXPECT_EQ(use.x_written, bit(5));
  EXPECT_TRUE(use.floating_point);
}

}  // namespace
}  // namespace quern
