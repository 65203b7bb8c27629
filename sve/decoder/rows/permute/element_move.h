// Rows of element moves: DUP, CPY, INSR and SEL.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/permute/element_move.h"
#include "sve/veclib/permute/element_move.h"

namespace quern::rows {

constexpr auto element_move_rows = group(
    row<U8>("ExtDupVI", "00000101 ii 1 iiii1 001000 nnnnn ddddd", vector_imm<sve_dup_zzi, dup_index_b>),
    row<U16>("ExtDupVI", "00000101 ii 1 iii10 001000 nnnnn ddddd", vector_imm<sve_dup_zzi, dup_index_h>),
    row<U32>("ExtDupVI", "00000101 ii 1 ii100 001000 nnnnn ddddd", vector_imm<sve_dup_zzi, dup_index_s>),
    row<U64>("ExtDupVI", "00000101 ii 1 i1000 001000 nnnnn ddddd", vector_imm<sve_dup_zzi, dup_index_d>),
    row<U128>("ExtDupVI", "00000101 ii 1 10000 001000 nnnnn ddddd", vector_imm<sve_dup_zzi, dup_index_q>),
    row<U8, U16, U32, U64>("SelVV", "00000101 zz 1 mmmmm 11 gggg nnnnn ddddd", direct<sve_sel_zpzz, Zd, Pg4, Zn, Zm>),
    row<S8, S16, S32, S64>("DupIZ", "00000101 zz 01 gggg 00 iiiiiiiii ddddd",
                           direct<sve_cpy_zpi, Zd, Pg16_z, imm9_shifted_s>),
    row<S8, S16, S32, S64>("DupIM", "00000101 zz 01 gggg 01 iiiiiiiii ddddd",
                           direct<sve_cpy_zpi, Zd, Pg16_m, imm9_shifted_s>),
    row<U8, U16, U32, U64>("DupS", "00000101 zz 100000 001110 nnnnn ddddd", direct<sve_dup_zr, Zd, Rn_sp>),
    row<U8, U16, U32, U64>("InsertS", "00000101 zz 100100 001110 mmmmm ddddd", library<InsertS, Zdn, Zdn, Rm5>),
    row<B8, H16, F32, D64>("InsertS", "00000101 zz 110100 001110 mmmmm ddddd", library<InsertS, Zdn, Zdn, Vm5>),
    row<S8, S16, S32, S64>("DupI", "00100101 zz 111000 11 iiiiiiiii ddddd", direct<sve_dup_zi, Zd, imm9_shifted_s>),
    row<S64>("DupMaskI", "00000101 11 0000 iiiiiiiiiiiii ddddd", direct<sve_dupm_zi, Zd, imm13>),
    row<B8, H16, F32, D64>("DupSM", "00000101 zz 100000 100 ggg nnnnn ddddd", direct<sve_cpy_zpv, Zd, Pg_m, Vn>),
    row<U8, U16, U32, U64>("DupSM", "00000101 zz 101000 101 ggg nnnnn ddddd", direct<sve_cpy_zpr, Zd, Pg_m, Rn_sp>));

}  // namespace quern::rows
