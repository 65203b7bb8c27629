// Rows of floating-point instructions that only move or change bits.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/float_bits.h"
#include "sve/veclib/floating_point/float_arithmetic.h"
#include "sve/veclib/permute/element_move.h"

namespace quern::rows {

constexpr auto float_bits_rows = group(
    row<F16, F32, D64>("DupIM", "00000101 zz 01 gggg 110 iiiiiiii ddddd", library<DupIM, Zd, Zd, Pg16_m, imm8_fp>),
    row<F32, D64>("AbsVM", "00000100 zz 011100 101 ggg nnnnn ddddd", unary<sve_fabs_zpz>),
    row<F16>("AbsVM", "00000100 zz 011100 101 ggg nnnnn ddddd", library_unary<AbsVM>),
    row<F32, D64>("NegVM", "00000100 zz 011101 101 ggg nnnnn ddddd", unary<sve_fneg_zpz>),
    row<F16>("NegVM", "00000100 zz 011101 101 ggg nnnnn ddddd", library_unary<NegVM>),
    row<F16, F32, D64>("DupI", "00100101 zz 111001 110 iiiiiiii ddddd", direct<sve_fdup_zi, Zd, imm8_fp_dup>));

}  // namespace quern::rows
