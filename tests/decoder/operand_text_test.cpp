// Operands as assembly.
#include <gtest/gtest.h>

#include "sve/decoder/operands.h"

namespace quern {
namespace {

struct text_case {
  operand op;
  std::uint32_t size, word;
  const char* text;
};

// Fields are given in place: 5 << 16 is register 5 in bits 20..16.
const text_case cases[] = {
    {Zd, size_b, 31, "z31.b"},
    {Zn, size_h, 3 << 5, "z3.h"},
    {Zm.of(size_q), size_b, 5 << 16, "z5.q"},
    {Zdn, size_s, 7, "z7.s"},
    {Zm.times(8), size_d, 2 << 16, "z2.d, lsl #3"},
    {Zd.as(operand_kind::z_whole), size_s, 4, "z4"},
    {Zt, size_b, 31, "{z31.b}"},
    {Zt.times(2), size_h, 31, "{z31.h, z0.h}"},
    {Zt.times(3), size_s, 29, "{z29.s-z31.s}"},
    {Zt.times(4), size_d, 29, "{z29.d, z30.d, z31.d, z0.d}"},
    {Zm_sxtw, size_s, 1 << 16, "z1.s, sxtw"},
    {Zm_uxtw.times(4), size_d, 1 << 16, "z1.d, uxtw #2"},
    {Vd, size_b, 9, "b9"},
    {Vdn, size_h, 9, "h9"},
    {Vn, size_s, 9 << 5, "s9"},
    {Vm5, size_d, 9 << 5, "d9"},
    {Pg_m, size_b, 7 << 10, "p7/m"},
    {Pg_z, size_b, 7 << 10, "p7/z"},
    {Pg, size_b, 7 << 10, "p7"},
    {Pg4, size_b, 15 << 10, "p15"},
    {Pg16_m, size_b, 15 << 16, "p15/m"},
    {Pn, size_d, 15 << 5, "p15.d"},
    {Pdn, size_b, 15, "p15.b"},
    {Pt, size_b, 15, "p15"},
    {Rd, size_h, 31, "wzr"},
    {Rn, size_d, 31 << 5, "xzr"},
    {Xm.times(2), size_b, 30 << 16, "x30, lsl #1"},
    {Xm, size_b, 30 << 16, "x30"},
    {Rdn, size_b, 3, "w3"},
    {Xdn, size_b, 3, "x3"},
    {Xn_sp, size_b, 31 << 5, "sp"},
    {Rn_sp, size_b, 31 << 5, "wsp"},
    {Rn_sp, size_s, 30 << 5, "w30"},
    {imm4_vl, size_b, 8 << 16, "#-8, mul vl"},
    {imm4_vl.times(3), size_b, 1 << 16, "#3, mul vl"},
    {imm4_s.times(16), size_b, 8 << 16, "#-128"},
    {imm9_vl, size_b, 0x20 << 16, "#-256, mul vl"},
    {imm9_vl, size_b, 0x1F << 16 | 7 << 10, "#255, mul vl"},
    {imm5.times(8), size_b, 31 << 16, "#248"},
    {imm5_s, size_b, 16 << 16, "#-16"},
    {imm5_low_s, size_b, 15 << 5, "#15"},
    {imm7, size_b, 127 << 14, "#127"},
    {imm8_s, size_b, 0x80 << 5, "#-128"},
    {imm9_shifted, size_b, 0x101 << 5, "#1, lsl #8"},
    {imm9_shifted, size_h, 0x1FF << 5, "#65280"},
    {imm9_shifted, size_d, 0x100 << 5, "#0, lsl #8"},
    {imm9_shifted_s, size_h, 0x1FE << 5, "#-512"},
    {imm9_shifted_s, size_b, 0xFE << 5, "#-2"},
    {imm13, size_d, 0 << 5, "#0x100000001"},
    {imm13, size_d, 0x1000 << 5, "#0x1"},
    {imm_ext, size_b, 31 << 16 | 7 << 10, "#255"},
    {imm8_fp_dup, size_h, 0x60 << 5, "#5.000000000000000000e-01"},
    {i1_half_one, size_h, 1 << 5, "#1.0"},
    {i1_half_two, size_h, 1 << 5, "#2.0"},
    {i1_zero_one, size_h, 0, "#0.0"},
    {pattern, size_b, 0, "pow2"},
    {pattern, size_b, 9 << 5, "vl16"},
    {pattern, size_b, 13 << 5, "vl256"},
    {pattern, size_b, 14 << 5, "#14"},
    {pattern, size_b, 29 << 5, "mul4"},
    {pattern, size_b, 31 << 5, "all"},
    {multiplier, size_b, 0, "mul #1"},
    {multiplier, size_b, 15 << 16, "mul #16"},
    {rot13, size_h, 3 << 13, "#270"},
    {rot16, size_h, 0, "#90"},
    {rot16, size_h, 1 << 16, "#270"},
    {left_d, size_d, 1 << 22 | 31 << 5, "#63"},
    {right_b, size_b, 0, "#8"},
    {right16_d, size_d, 1 << 22, "#32"},
    {dup_index_b, size_b, 3 << 22 | 15 << 17, "[63]"},
    {index3, size_h, 1 << 22 | 3 << 19, "[7]"},
    {prfop, size_b, 0, "pldl1keep"},
    {prfop, size_b, 5, "pldl3strm"},
    {prfop, size_b, 6, "#6"},
    {prfop, size_b, 10, "pstl2keep"},
};

TEST(OperandText, ReadsAsTheAssemblerWritesIt) {
  for (const text_case& c : cases) EXPECT_EQ(format_operand(c.op, c.size, c.word), c.text) << c.op.name;
}

}  // namespace
}  // namespace quern
