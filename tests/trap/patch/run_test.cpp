// Which words make a run, and the registers that they use.
#include "sve/trap/patch/run.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

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
    {"ld1b {z7.b}, p0/z, [x1, x2]", 0xA4024027, {.z = bit(7), .z_written = bit(7), .x = bit(1) | bit(2)}},
    {"st1b {z7.b}, p0, [x1, x2]", 0xE4024027, {.z = bit(7), .x = bit(1) | bit(2)}},
    {"ld4b {z30.b, z31.b, z0.b, z1.b}, p0/z, [x1]",
     0xA460E03E,
     {.z = bit(30) | bit(31) | bit(0) | bit(1), .z_written = bit(30) | bit(31) | bit(0) | bit(1), .x = bit(1)}},
    {"st2w {z31.s, z0.s}, p0, [sp]", 0xE530E3FF, {.z = bit(31) | bit(0)}},
    {"whilelo p1.b, x2, x3", 0x25231C41, {.x = bit(2) | bit(3)}},
    {"incb x5", 0x0430E3E5, {.x = bit(5), .x_written = bit(5)}},
    {"addvl sp, sp, #-1", 0x043F57FF, {.sp_written = true}},
    {"addvl x7, sp, #1", 0x043F5027, {.x = bit(7), .x_written = bit(7)}},
    {"cntp xzr, p0, p1.b", 0x2520803F, {}},
    {"fadd z1.s, z2.s, z3.s", 0x65830041, {.z = bit(1) | bit(2) | bit(3), .z_written = bit(1)}},
    {"fadda s1, p0, s1, z3.s", 0x65982061, {.z = bit(1) | bit(3), .z_written = bit(1), .fpsr = true}},
    {"str p3, [x4]", 0xE5800083, {.x = bit(4)}},
};

TEST(RegisterUse, FollowsFromTheOperands) {
  for (const usage& u : words) {
    const decode_row* const row = decode_word(u.word).row;
    ASSERT_NE(row, nullptr) << u.text;
    const register_use use = use_of(run_word{u.word, row, row->thunk, {}, 0});
    EXPECT_EQ(use.z, u.wanted.z) << u.text;
    EXPECT_EQ(use.z_written, u.wanted.z_written) << u.text;
    EXPECT_EQ(use.x, u.wanted.x) << u.text;
    EXPECT_EQ(use.x_written, u.wanted.x_written) << u.text;
    EXPECT_EQ(use.sp_written, u.wanted.sp_written) << u.text;
    EXPECT_EQ(use.fpsr, u.wanted.fpsr) << u.text;
  }
}

TEST(RegisterUse, OfARunIsThatOfAllItsWords) {
  std::array<run_word, 3> run;
  std::size_t count = 0;
  for (const std::uint32_t word : {0x04250083u, 0x65982061u, 0x0430E3E5u})
    run[count++] = {word, decode_word(word).row, nullptr, {}, 0};
  const register_use use = use_of(run);
  EXPECT_EQ(use.z, 0x3Au);
  EXPECT_EQ(use.z_written, bit(3) | bit(1));
  EXPECT_EQ(use.x, bit(5));
  EXPECT_EQ(use.x_written, bit(5));
  EXPECT_TRUE(use.fpsr);
}

struct collected {
  const char* text;
  std::vector<std::uint32_t> code;
  std::size_t bytes, wanted;
};

constexpr std::uint32_t add = 0x04250083;
constexpr std::uint32_t ldff1b = 0xA4026020, ldnf1b = 0xA410A020, prfb = 0x8400C020, incb = 0x0430E3E5;
constexpr std::uint32_t nop = 0xD503201F, ret = 0xD65F03C0;
constexpr std::uint32_t b_ne_back_1 = 0x54FFFFE1, b_ne_back_2 = 0x54FFFFC1, b_ne_back_3 = 0x54FFFFA1,
                        b_ne_on = 0x54000041;

std::vector<std::uint32_t> plain_between(std::size_t plain) {
  std::vector<std::uint32_t> code(plain + 2, nop);
  code.front() = code.back() = add;
  return code;
}

const collected runs[] = {
    {"no emulated word", {ret, add}, 8, 0},
    {"to the first other word", {add, add, ret, add}, 16, 2},
    {"the program's own instructions between, not behind", {add, nop, add, nop, nop, ret}, 24, 3},
    {"as many of them as are worth it", plain_between(8), 40, 10},
    {"not more", plain_between(9), 44, 1},
    {"none for words that are not called", {incb, nop, incb, ret}, 16, 1},
    {"but for a later one that is", {incb, nop, add, ret}, 16, 3},
    {"a loop", {add, add, nop, b_ne_back_2, add}, 20, 4},
    {"a loop that begins behind the first word", {incb, add, b_ne_back_1, add}, 16, 3},
    {"no loop to before the run", {add, nop, b_ne_back_3, add}, 16, 1},
    {"no loop without a word that is called", {add, nop, b_ne_back_1, add}, 16, 1},
    {"no way on", {add, nop, b_ne_on, add}, 16, 1},
    {"no loop whose branch can't be read", {add, nop, b_ne_back_2}, 8, 1},
    {"to the end of what may be read", {add, add, add}, 8, 2},
    {"loads that probe and a prefetch are words like others", {ldff1b, ldnf1b, prfb, add}, 16, 4},
    {"the most", std::vector<std::uint32_t>(max_run + 3, add), 4 * (max_run + 3), max_run},
};

TEST(CollectRun, TakesEmulatedWordsThatFollowEachOther) {
  for (const collected& c : runs) {
    std::array<run_word, max_run> run;
    const std::size_t count = collect_run(reinterpret_cast<const unsigned char*>(c.code.data()), c.bytes, run);
    EXPECT_EQ(count, c.wanted) << c.text;
    for (std::size_t i = 0; i != count; ++i) {
      EXPECT_EQ(run[i].word, c.code[i]) << c.text;
      EXPECT_EQ(run[i].row, decode_word(c.code[i]).row) << c.text;
    }
  }
}

}  // namespace
}  // namespace quern
