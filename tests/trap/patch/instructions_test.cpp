// The words of generated code, as the assembler makes them.
#include "sve/trap/patch/instructions.h"

#include <gtest/gtest.h>

namespace quern::aarch64 {
namespace {

struct assembled {
  const char* text;
  word made, wanted;
};

using enum system_register;

constexpr assembled instructions[] = {
    {"stp x0, x1, [x19, #16]", stp_x(x0, x1, x19, 16), 0xA9010660},
    {"stp x30, x1, [x19, #-512]", stp_x({30}, x1, x19, -512), 0xA920067E},
    {"ldp x18, x19, [x19, #144]", ldp_x({18}, x19, x19, 144), 0xA9494E72},
    {"stp q30, q31, [x19, #-1024]", stp_q({30}, {31}, x19, -1024), 0xAD207E7E},
    {"ldp q0, q1, [x19, #1008]", ldp_q({0}, {1}, x19, 1008), 0xAD5F8660},
    {"str x0, [x19, #264]", str_x(x0, x19, 264), 0xF9008660},
    {"ldr x30, [x19, #32760]", ldr_x({30}, x19, 32760), 0xF97FFE7E},
    {"str w0, [x19, #272]", str_w(x0, x19, 272), 0xB9011260},
    {"ldr w1, [x19, #16380]", ldr_w(x1, x19, 16380), 0xB97FFE61},
    {"str q31, [x19, #8256]", str_q({31}, x19, 8256), 0x3D88127F},
    {"ldr q5, [x19, #65520]", ldr_q({5}, x19, 65520), 0x3DFFFE65},
    {"stur xzr, [x19, #-64]", stur_x(zero, x19, -64), 0xF81C027F},
    {"ldur x0, [x19, #255]", ldur_x(x0, x19, 255), 0xF84FF260},
    {"str x19, [sp, #-16]!", str_x_pre(x19, sp, -16), 0xF81F0FF3},
    {"stp x19, x20, [sp, #-16]!", stp_x_pre(x19, x20, sp, -16), 0xA9BF53F3},
    {"ldp x19, x20, [sp], #16", ldp_x_post(x19, x20, sp, 16), 0xA8C153F3},
    {"ldr x0, [sp], #16", ldr_x_post(x0, sp, 16), 0xF84107E0},
    {"ldr x16, . - 40", ldr_x_literal({16}, -40), 0x58FFFED0},
    {"ldr w1, . + 1048572", ldr_w_literal(x1, 1048572), 0x187FFFE1},
    {"adr x0, . - 33", adr(x0, -33), 0x70FFFEE0},
    {"adr x0, . + 6", adr(x0, 6), 0x50000020},
    {"cbnz x0, . - 1048576", cbnz_x(x0, -1048576), 0xB5800000},
    {"cbz x3, . + 8", cbz_x({3}, 8), 0xB4000043},
    {"tbnz x20, #31, . - 32768", tbnz_x(x20, 31, -32768), 0x37FC0014},
    {"tbz x20, #32, . + 4", tbz_x(x20, 32, 4), 0xB6000034},
    {"tbnz x20, #63, . + 32764", tbnz_x(x20, 63, 32764), 0xB7FBFFF4},
    {"b . + 134217724", b(branch_reach - 4), 0x15FFFFFF},
    {"b . - 134217728", b(-branch_reach), 0x16000000},
    {"blr x16", blr({16}), 0xD63F0200},
    {"mrs x0, nzcv", mrs(x0, nzcv), 0xD53B4200},
    {"mrs x1, fpcr", mrs(x1, fpcr), 0xD53B4401},
    {"mrs x1, fpsr", mrs(x1, fpsr), 0xD53B4421},
    {"mrs x19, tpidr_el0", mrs(x19, tpidr_el0), 0xD53BD053},
    {"msr nzcv, x0", msr(nzcv, x0), 0xD51B4200},
    {"msr fpsr, x1", msr(fpsr, x1), 0xD51B4421},
    {"mov x0, x19", mov_x(x0, x19), 0xAA1303E0},
    {"mov x1, sp", add_x(x1, sp, 0), 0x910003E1},
    {"mov sp, x0", add_x(sp, x0, 0), 0x9100001F},
    {"add x19, x19, #4095", add_x(x19, x19, 4095), 0x913FFE73},
    {"add x19, x19, #9, lsl #12", add_x_4096(x19, x19, 9), 0x91402673},
    {"sub x3, x4, #4095", sub_x({3}, {4}, 4095), 0xD13FFC83},
    {"sub sp, sp, #2, lsl #12", sub_x_4096(sp, sp, 2), 0xD1400BFF},
    {"mov x3, #65535", movz_x({3}, 65535), 0xD29FFFE3},
    {"mov x3, #-65536", movn_x({3}, 65535), 0x929FFFE3},
    {"orr x20, x20, #0xf0", set_bits_x(x20, x20, 4, 4), 0xB27C0E94},
    {"orr x20, x20, #0xf", set_bits_x(x20, x20, 0, 4), 0xB2400E94},
    {"orr x20, x20, #0xf000000000000000", set_bits_x(x20, x20, 60, 4), 0xB2440E94},
    {"and x20, x20, #0xfffffffffffffff1", clear_bits_x(x20, x20, 1, 3), 0x927CF294},
    {"and x20, x20, #0xfffffffffffffff7", clear_bits_x(x20, x20, 3, 1), 0x927CFA94},
    {"and x20, x20, #0x0fffffffffffffff", clear_bits_x(x20, x20, 60, 4), 0x9240EE94},
    {"and x20, x20, #0xffffff0fffffff0f", clear_bits_twice_x(x20, x20, 4, 4), 0x92186E94},
    {"and x20, x20, #0xfffffff0fffffff0", clear_bits_twice_x(x20, x20, 0, 4), 0x921C6E94},
    {"ubfx x0, x20, #36, #4", ubfx_x(x0, x20, 36, 4), 0xD3649E80},
    {"bfxil x20, x0, #0, #4", bfi_x(x20, x0, 0, 4), 0xB3400C14},
    {"bfi x20, x0, #52, #4", bfi_x(x20, x0, 52, 4), 0xB34C0C14},
    {"orr x20, x20, x0", orr_x(x20, x20, x0), 0xAA000294},
    {"udf #31", udf(31), 0x0000001F},
    {"udf #0", udf(), 0x00000000},
};

TEST(Instructions, AreThoseOfTheAssembler) {
  for (const assembled& a : instructions) EXPECT_EQ(a.made, a.wanted) << a.text;
}

TEST(Branch, TellsWhereItLeads) {
  for (const std::int64_t distance :
       {-branch_reach, std::int64_t{-4}, std::int64_t{0}, std::int64_t{4}, branch_reach - 4}) {
    EXPECT_TRUE(is_b(b(distance))) << distance;
    EXPECT_EQ(b_distance(b(distance)), distance);
  }
  EXPECT_FALSE(is_b(blr({16})));
  EXPECT_FALSE(is_b(0x94000000)) << "bl";
}

}  // namespace
}  // namespace quern::aarch64
