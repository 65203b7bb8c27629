// Rows of floating-point arithmetic: of vectors, with a constant, and with one element.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/veclib/floating_point/float_arithmetic.h"

namespace quern::rows {

constexpr auto float_arithmetic_rows = group(
    row<F32, D64>("AddVIM", "01100101 zz 011000 100 ggg 0000 i ddddd", binary_imm_fp<sve_fadd_zpi, i1_half_one>),
    row<F16>("AddVIM", "01100101 zz 011000 100 ggg 0000 i ddddd", library_binary_imm<AddVIM, i1_half_one>),
    row<F32, D64>("SubVIM", "01100101 zz 011001 100 ggg 0000 i ddddd", binary_imm_fp<sve_fsub_zpi, i1_half_one>),
    row<F16>("SubVIM", "01100101 zz 011001 100 ggg 0000 i ddddd", library_binary_imm<SubVIM, i1_half_one>),
    row<F32, D64>("MulVIM", "01100101 zz 011010 100 ggg 0000 i ddddd", binary_imm_fp<sve_fmul_zpi, i1_half_two>),
    row<F16>("MulVIM", "01100101 zz 011010 100 ggg 0000 i ddddd", library_binary_imm<MulVIM, i1_half_two>),
    row<F32, D64>("SubRVIM", "01100101 zz 011011 100 ggg 0000 i ddddd", binary_imm_fp<sve_fsubr_zpi, i1_half_one>),
    row<F16>("SubRVIM", "01100101 zz 011011 100 ggg 0000 i ddddd", library_binary_imm<SubRVIM, i1_half_one>),
    row<F16, F32, D64>("MaxNumVIM", "01100101 zz 011100 100 ggg 0000 i ddddd",
                       library_binary_imm<MaxNumVIM, i1_zero_one>),
    row<F16, F32, D64>("MinNumVIM", "01100101 zz 011101 100 ggg 0000 i ddddd",
                       library_binary_imm<MinNumVIM, i1_zero_one>),
    row<F16, F32, D64>("MaxVIM", "01100101 zz 011110 100 ggg 0000 i ddddd", library_binary_imm<MaxVIM, i1_zero_one>),
    row<F16, F32, D64>("MinVIM", "01100101 zz 011111 100 ggg 0000 i ddddd", library_binary_imm<MinVIM, i1_zero_one>),
    row<F16>("MulVVIX", "01100100 0i1 ii mmm 001000 nnnnn ddddd", library<MulVVIX, Zd, Zn, Zm_low8, index3>),
    row<F32, D64>("AddVVM", "01100101 zz 000000 100 ggg mmmmm ddddd", binary_fp<sve_fadd_zpz>),
    row<F16>("AddVVM", "01100101 zz 000000 100 ggg mmmmm ddddd", library_binary<AddVVM>),
    row<F32, D64>("SubVVM", "01100101 zz 000001 100 ggg mmmmm ddddd", binary_fp<sve_fsub_zpz>),
    row<F16>("SubVVM", "01100101 zz 000001 100 ggg mmmmm ddddd", library_binary<SubVVM>),
    row<F32, D64>("MulVVM", "01100101 zz 000010 100 ggg mmmmm ddddd", binary_fp<sve_fmul_zpz>),
    row<F16>("MulVVM", "01100101 zz 000010 100 ggg mmmmm ddddd", library_binary<MulVVM>),
    row<F32, D64>("SubRVVM", "01100101 zz 000011 100 ggg mmmmm ddddd", binary_fp<sve_fsubr_zpz>),
    row<F16>("SubRVVM", "01100101 zz 000011 100 ggg mmmmm ddddd", library_binary<SubRVVM>),
    row<F32, D64>("MaxNumVVM", "01100101 zz 000100 100 ggg mmmmm ddddd", binary_fp<sve_fmaxnm_zpz>),
    row<F16>("MaxNumVVM", "01100101 zz 000100 100 ggg mmmmm ddddd", library_binary<MaxNumVVM>),
    row<F32, D64>("MinNumVVM", "01100101 zz 000101 100 ggg mmmmm ddddd", binary_fp<sve_fminnm_zpz>),
    row<F16>("MinNumVVM", "01100101 zz 000101 100 ggg mmmmm ddddd", library_binary<MinNumVVM>),
    row<F32, D64>("MaxVVM", "01100101 zz 000110 100 ggg mmmmm ddddd", binary_fp<sve_fmax_zpz>),
    row<F16>("MaxVVM", "01100101 zz 000110 100 ggg mmmmm ddddd", library_binary<MaxVVM>),
    row<F16, F32, D64>("MinVVM", "01100101 zz 000111 100 ggg mmmmm ddddd", library_binary<MinVVM>),
    row<F16, F32, D64>("AbdVVM", "01100101 zz 001000 100 ggg mmmmm ddddd", library_binary<AbdVVM>),
    row<F16, F32, D64>("ScaleVVM", "01100101 zz 001001 100 ggg mmmmm ddddd", library_binary<ScaleVVM>),
    row<F16, F32, D64>("MulXVVM", "01100101 zz 001010 100 ggg mmmmm ddddd", library_binary<MulXVVM>),
    row<F32, D64>("DivRVVM", "01100101 zz 001100 100 ggg mmmmm ddddd", binary_fp<sve_fdivr_zpz>),
    row<F16>("DivRVVM", "01100101 zz 001100 100 ggg mmmmm ddddd", library_binary<DivRVVM>),
    row<F32, D64>("DivVVM", "01100101 zz 001101 100 ggg mmmmm ddddd", binary_fp<sve_fdiv_zpz>),
    row<F16>("DivVVM", "01100101 zz 001101 100 ggg mmmmm ddddd", library_binary<DivVVM>),
    row<F32, D64>("SqrtVM", "01100101 zz 001101 101 ggg nnnnn ddddd", unary_fp<sve_fsqrt_zpz>),
    row<F16>("SqrtVM", "01100101 zz 001101 101 ggg nnnnn ddddd", library_unary<SqrtVM>),
    row<F32, D64>("AddVVX", "01100101 zz 0 mmmmm 000000 nnnnn ddddd", vectors_fp<sve_fadd_zzz>),
    row<F16>("AddVVX", "01100101 zz 0 mmmmm 000000 nnnnn ddddd", library_vectors<AddVVX>),
    row<F32, D64>("SubVVX", "01100101 zz 0 mmmmm 000001 nnnnn ddddd", vectors_fp<sve_fsub_zzz>),
    row<F16>("SubVVX", "01100101 zz 0 mmmmm 000001 nnnnn ddddd", library_vectors<SubVVX>),
    row<F32, D64>("MulVVX", "01100101 zz 0 mmmmm 000010 nnnnn ddddd", vectors_fp<sve_fmul_zzz>),
    row<F16>("MulVVX", "01100101 zz 0 mmmmm 000010 nnnnn ddddd", library_vectors<MulVVX>),
    row<F32>("MulVVIX", "01100100 101 ii mmm 001000 nnnnn ddddd", library<MulVVIX, Zd, Zn, Zm_low8, index2>),
    row<D64>("MulVVIX", "01100100 111 i mmmm 001000 nnnnn ddddd", library<MulVVIX, Zd, Zn, Zm_low16, index1>));

}  // namespace quern::rows
