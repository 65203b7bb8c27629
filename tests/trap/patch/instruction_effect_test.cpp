// The registers that single AArch64 instructions write, and where they lead.
#include "sve/trap/patch/instruction_effect.h"

#include <gtest/gtest.h>

namespace quern {
namespace {

constexpr std::uint32_t bit(int n) { return std::uint32_t{1} << n; }

struct effect {
  const char* text;
  std::uint32_t word;
  written_registers wanted;
};

// Where a class tells too little, more than the instruction writes: moves between the files and prefetches.
constexpr effect known[] = {
    {"add x1, x2, #3", 0x91000C41, {bit(1), 0}},
    {"adds w29, w3, #1", 0x3100047D, {bit(29), 0}},
    {"sub sp, sp, #16", 0xD10043FF, {0, 0}},
    {"cmp x3, #4", 0xF100107F, {0, 0}},
    {"movk x7, #9, lsl #16", 0xF2A00127, {bit(7), 0}},
    {"adrp x17, .", 0x90000011, {bit(17), 0}},
    {"ubfx x30, x1, #3, #4", 0xD343183E, {bit(30), 0}},
    {"extr x5, x6, x7, #8", 0x93C720C5, {bit(5), 0}},
    {"madd x3, x4, x5, x6", 0x9B051883, {bit(3), 0}},
    {"csel w8, w9, w10, eq", 0x1A8A0128, {bit(8), 0}},
    {"tst x1, x2", 0xEA02003F, {0, 0}},
    {"rbit x11, x12", 0xDAC0018B, {bit(11), 0}},
    {"orr x0, x1, x2, lsl #3", 0xAA020C20, {bit(0), 0}},
    {"nop", 0xD503201F, {0, 0}},
    {"bti c", 0xD503245F, {0, 0}},
    {"paciasp", 0xD503233F, {bit(30), 0}},
    {"autiasp", 0xD50323BF, {bit(30), 0}},
    {"mrs x9, tpidr_el0", 0xD53BD049, {bit(9), 0}},
    {"msr fpcr, x9", 0xD51B4409, {0, 0}},
    {"dmb ish", 0xD5033BBF, {0, 0}},
    {"dc zva, x3", 0xD50B7423, {0, 0}},
    {"ldr x3, [x4]", 0xF9400083, {bit(3), 0}},
    {"ldr w3, [x4, #8]!", 0xB8408C83, {bit(3) | bit(4), 0}},
    {"ldrsw x3, [x4], #4", 0xB8804483, {bit(3) | bit(4), 0}},
    {"ldrb w3, [x4, w5, uxtw]", 0x38654883, {bit(3), 0}},
    {"str x3, [x4, #-8]!", 0xF81F8C83, {bit(4), 0}},
    {"str x3, [x4, x5]", 0xF8256883, {0, 0}},
    {"ldur x3, [x4, #1]", 0xF8401083, {bit(3), 0}},
    {"ldr q3, [x4], #16", 0x3CC10483, {bit(4), bit(3)}},
    {"str q3, [x4, #16]", 0x3D800483, {0, 0}},
    {"ldr b9, [x4, x5]", 0x3C656889, {0, bit(9)}},
    {"str d9, [sp, #-16]!", 0xFC1F0FE9, {0, 0}},
    {"ldr x3, . + 8", 0x58000043, {bit(3), 0}},
    {"ldr q3, . + 8", 0x9C000043, {0, bit(3)}},
    {"ldp x29, x30, [sp], #32", 0xA8C27BFD, {bit(29) | bit(30), 0}},
    {"stp x3, x4, [x5, #-16]!", 0xA9BF10A3, {bit(5), 0}},
    {"stp x3, x4, [x5]", 0xA90010A3, {0, 0}},
    {"ldp q30, q31, [x5, #32]!", 0xADC17CBE, {bit(5), bit(30) | bit(31)}},
    {"ldp d8, d9, [sp, #16]", 0x6D4127E8, {0, bit(8) | bit(9)}},
    {"ldnp x1, x2, [x3]", 0xA8400861, {bit(1) | bit(2), 0}},
    {"ldpsw x1, x2, [x3]", 0x69400861, {bit(1) | bit(2), 0}},
    {"ldaxr x3, [x4]", 0xC85FFC83, {bit(3), 0}},
    {"stlxr w6, x3, [x4]", 0xC806FC83, {bit(3) | bit(6), 0}},
    {"ldar w3, [x4]", 0x88DFFC83, {bit(3), 0}},
    {"casal x6, x3, [x4]", 0xC8E6FC83, {bit(3) | bit(6), 0}},
    {"ldaddal x1, x2, [x3]", 0xF8E10062, {bit(2), 0}},
    {"swp w1, w2, [x3]", 0xB8218062, {bit(2), 0}},
    {"prfm pldl1keep, [x3]", 0xF9800060, {bit(0), 0}},
    {"ld1 {v3.16b}, [x4]", 0x4C407083, {0, bit(3)}},
    {"ld1 {v30.4s, v31.4s, v0.4s}, [x4]", 0x4C40689E, {0, bit(30) | bit(31) | bit(0)}},
    {"ld2 {v3.8h, v4.8h}, [x4], #32", 0x4CDF8483, {bit(4), bit(3) | bit(4)}},
    {"ld4 {v3.8h-v6.8h}, [x4], x5", 0x4CC50483, {bit(4), bit(3) | bit(4) | bit(5) | bit(6)}},
    {"ld3 {v3.8h-v5.8h}, [x4]", 0x4C404483, {0, bit(3) | bit(4) | bit(5)}},
    {"ld1 {v3.2d-v6.2d}, [x4]", 0x4C402C83, {0, bit(3) | bit(4) | bit(5) | bit(6)}},
    {"ld1 {v3.2d, v4.2d}, [x4]", 0x4C40AC83, {0, bit(3) | bit(4)}},
    {"st3 {v3.8h-v5.8h}, [x4]", 0x4C004483, {0, 0}},
    {"st1 {v3.16b}, [x4], #16", 0x4C9F7083, {bit(4), 0}},
    {"ld1 {v7.s}[2], [x4]", 0x4D408087, {0, bit(7)}},
    {"ld2 {v7.b, v8.b}[9], [x4]", 0x4D600487, {0, bit(7) | bit(8)}},
    {"ld3 {v7.d-v9.d}[1], [x4], x5", 0x4DC5A487, {bit(4), bit(7) | bit(8) | bit(9)}},
    {"ld4r {v7.4s-v10.4s}, [x4]", 0x4D60E887, {0, bit(7) | bit(8) | bit(9) | bit(10)}},
    {"ld1r {v7.4s}, [x4]", 0x4D40C887, {0, bit(7)}},
    {"st1 {v7.s}[2], [x4]", 0x4D008087, {0, 0}},
    {"add v3.4s, v4.4s, v5.4s", 0x4EA58483, {0, bit(3)}},
    {"movi v16.16b, #1", 0x4F00E430, {0, bit(16)}},
    {"dup v3.4s, w4", 0x4E040C83, {bit(3), bit(3)}},
    {"umov w4, v5.s[1]", 0x0E0C3CA4, {bit(4), bit(4)}},
    {"smov x4, v5.h[1]", 0x4E062CA4, {bit(4), bit(4)}},
    {"ins v3.d[1], v4.d[0]", 0x6E180483, {0, bit(3)}},
    {"fmov x3, d4", 0x9E660083, {bit(3), bit(3)}},
    {"fmov d3, x4", 0x9E670083, {bit(3), bit(3)}},
    {"fcvtzs w3, s4", 0x1E380083, {bit(3), bit(3)}},
    {"scvtf d3, x4, #7", 0x9E42E483, {bit(3), bit(3)}},
    {"fadd s3, s4, s5", 0x1E252883, {0, bit(3)}},
    {"fmadd d3, d4, d5, d6", 0x1F451883, {0, bit(3)}},
    {"fmov s3, #1.0", 0x1E2E1003, {0, bit(3)}},
    {"fcsel d3, d4, d5, ne", 0x1E651C83, {0, bit(3)}},
    {"fcvt d3, s4", 0x1E22C083, {0, bit(3)}},
    {"addv b3, v4.16b", 0x4E31B883, {0, bit(3)}},
    {"tbl v3.16b, {v4.16b, v5.16b}, v6.16b", 0x4E062083, {0, bit(3)}},
    {"dup d3, v4.d[1]", 0x5E180483, {0, bit(3)}},
    {"aese v3.16b, v4.16b", 0x4E284883, {0, bit(3)}},
};

TEST(EffectOf, HasAllThatIsWritten) {
  for (const effect& e : known) {
    const std::optional<written_registers> found = effect_of(e.word);
    ASSERT_TRUE(found.has_value()) << e.text;
    EXPECT_EQ(found->x, e.wanted.x) << e.text;
    EXPECT_EQ(found->v, e.wanted.v) << e.text;
    EXPECT_EQ(way_on_of(e.word).to, way_on::kind::next) << e.text;
  }
}

struct named_word {
  const char* text;
  std::uint32_t word;
};

constexpr named_word unknown[] = {
    {"casp x2, x3, x4, x5, [x6]", 0x48227CC4},
    {"add z3.b, z4.b, z5.b", 0x04250083},
    {"hint #7", 0xD50320FF},
    {"pacia1716", 0xD503211F},
    {"xpaclri", 0xD50320FF},
    {"svc #0", 0xD4000001},
    {"ldraa x3, [x4]", 0xF8200483},
    {"ldg x3, [x4]", 0xD9600083},
    {"udf #0", 0x00000000},
    {"wfe", 0xD503205F},
};

TEST(EffectOf, IsNothingForUnknownInstructions) {
  for (const named_word& u : unknown) EXPECT_FALSE(effect_of(u.word).has_value()) << u.text;
}

struct lead {
  const char* text;
  std::uint32_t word;
  way_on wanted;
};

using enum way_on::kind;
constexpr lead leads[] = {
    {"b . + 8", 0x14000002, {jump, 8}},
    {"b . - 4", 0x17FFFFFF, {jump, -4}},
    {"bl . + 134217724", 0x95FFFFFF, {jump_and_next, 134217724, true}},
    {"b.ne . - 8", 0x54FFFFC1, {jump_and_next, -8}},
    {"cbz w3, . + 12", 0x34000063, {jump_and_next, 12}},
    {"cbnz x3, . - 1048576", 0xB5800003, {jump_and_next, -1048576}},
    {"tbz w3, #5, . + 16", 0x36280083, {jump_and_next, 16}},
    {"tbnz x3, #33, . - 32768", 0xB70C0003, {jump_and_next, -32768}},
    {"ret", 0xD65F03C0, {none}},
    {"brk #0x3e8", 0xD4207D00, {none}},
    {"br x17", 0xD61F0220, {elsewhere}},
    {"blr x3", 0xD63F0060, {elsewhere}},
    {"ret x3", 0xD65F0060, {elsewhere}},
    {"retaa", 0xD65F0BFF, {elsewhere}},
    {"eret", 0xD69F03E0, {elsewhere}},
};

TEST(WayOn, IsToldOfEachBranch) {
  for (const lead& l : leads) {
    const way_on found = way_on_of(l.word);
    EXPECT_EQ(found.to, l.wanted.to) << l.text;
    EXPECT_EQ(found.distance, l.wanted.distance) << l.text;
    EXPECT_EQ(found.is_call, l.wanted.is_call) << l.text;
  }
}

}  // namespace
}  // namespace quern
