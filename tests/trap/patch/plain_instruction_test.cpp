// Instructions of the program's own that a run takes along, and those that it leaves alone.
#include "sve/trap/patch/plain_instruction.h"

#include <gtest/gtest.h>

namespace quern {
namespace {

struct plain {
  const char* text;
  std::uint32_t word, with_own_registers;
  std::uint32_t d, n, m;
  bool sets_flags;
};

constexpr plain taken_along[] = {
    {"nop", 0xD503201F, 0xD503201F, 31, 31, 31, false},
    {"add x3, x4, #5", 0x91001483, 0x91001420, 3, 4, 31, false},
    {"sub w3, w4, #1, lsl #12", 0x51400483, 0x51400420, 3, 4, 31, false},
    {"cmp x7, #65", 0xF10104FF, 0xF101043F, 31, 7, 31, true},
    {"subs w1, w1, #1", 0x71000421, 0x71000420, 1, 1, 31, true},
    {"add x0, x0, x5", 0x8B050000, 0x8B020020, 0, 0, 5, false},
    {"add x9, x10, x11, lsl #63", 0x8B0BFD49, 0x8B02FC20, 9, 10, 11, false},
    {"neg x1, x2", 0xCB0203E1, 0xCB0203E0, 1, 31, 2, false},
    {"cmp w3, w4", 0x6B04007F, 0x6B02003F, 31, 3, 4, true},
    {"mov x5, x6", 0xAA0603E5, 0xAA0203E0, 5, 31, 6, false},
    {"tst x5, x6", 0xEA0600BF, 0xEA02003F, 31, 5, 6, true},
    {"eor w5, w6, w7, lsl #31", 0x4A077CC5, 0x4A027C20, 5, 6, 7, false},
    {"mov x30, #0x10000", 0xD2A0003E, 0xD2A00020, 30, 31, 31, false},
    {"mov w3, #-1", 0x12800003, 0x12800000, 3, 31, 31, false},
    {"lsl x3, x4, #2", 0xD37EF483, 0xD37EF420, 3, 4, 31, false},
    {"sxtw x3, w4", 0x93407C83, 0x93407C20, 3, 4, 31, false},
    {"lsr w3, w4, #2", 0x53027C83, 0x53027C20, 3, 4, 31, false},
    {"mul x3, x4, x5", 0x9B057C83, 0x9B027C20, 3, 4, 5, false},
};

TEST(PlainInstruction, ComputesInGeneralRegisters) {
  for (const plain& p : taken_along) {
    const auto i = plain_instruction_of(p.word);
    ASSERT_TRUE(i) << p.text;
    EXPECT_EQ(i->word, p.with_own_registers) << p.text;
    EXPECT_EQ(i->d, p.d) << p.text;
    EXPECT_EQ(i->n, p.n) << p.text;
    EXPECT_EQ(i->m, p.m) << p.text;
    EXPECT_EQ(i->sets_flags, p.sets_flags) << p.text;
  }
}

struct other {
  const char* text;
  std::uint32_t word;
};

constexpr other left_alone[] = {
    {"add sp, sp, #16", 0x910043FF},
    {"mov x3, sp", 0x910003E3},
    {"mov sp, x3", 0x9100007F},
    {"cmp sp, #1", 0xF10007FF},
    {"movk x3, #1, which reads it", 0xF2800023},
    {"bfi x3, x4, #0, #8, which reads it", 0xB3401C83},
    {"undefined: add w3, w4, w5, lsl #32", 0x0B058083},
    {"undefined: mov w3, #1, lsl #32", 0x52C00023},
    {"undefined: eor w5, w6, w7, lsl #32", 0x4A0780C5},
    {"adc x3, x4, x5, which reads the flags", 0x9A050083},
    {"madd x3, x4, x5, x6", 0x9B051883},
    {"ldr x3, [x4], which may fault", 0xF9400083},
    {"adrp x3, #0, whose address counts", 0x90000003},
    {"ret", 0xD65F03C0},
    {"udf #0", 0},
    {"fmov s0, w1", 0x1E270020},
};

TEST(PlainInstruction, IsNoneThatDoesMoreOrIsUndefined) {
  for (const other& o : left_alone) EXPECT_FALSE(plain_instruction_of(o.word)) << o.text;
}

struct branch {
  const char* text;
  std::uint32_t word, bare;
  std::uint32_t tested;
  bool tests_flags;
  std::int64_t distance;
};

constexpr branch branches[] = {
    {"b.ne .-8", 0x54FFFFC1, 0x54000001, 31, true, -8},
    {"cbnz x3, .-4", 0xB5FFFFE3, 0xB5000000, 3, false, -4},
    {"cbz w3, .+8", 0x34000043, 0x34000000, 3, false, 8},
    {"cbz xzr, .-4", 0xB4FFFFFF, 0xB400001F, 31, false, -4},
};

TEST(PlainBranch, TestsFlagsOrARegister) {
  for (const branch& b : branches) {
    const auto found = plain_branch_of(b.word);
    ASSERT_TRUE(found) << b.text;
    EXPECT_EQ(found->word, b.bare) << b.text;
    EXPECT_EQ(found->tested, b.tested) << b.text;
    EXPECT_EQ(found->tests_flags, b.tests_flags) << b.text;
    EXPECT_EQ(found->distance, b.distance) << b.text;
  }
}

constexpr other no_branches[] = {
    {"b .-4", 0x17FFFFFF}, {"tbnz x3, #0, .-4", 0x3707FFE3}, {"bl .-4", 0x97FFFFFF}, {"add x0, x0, x5", 0x8B050000}};

TEST(PlainBranch, IsNoneOfAnotherKind) {
  for (const other& o : no_branches) EXPECT_FALSE(plain_branch_of(o.word)) << o.text;
}

}  // namespace
}  // namespace quern
