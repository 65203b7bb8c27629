// Rows of integer instructions of one vector.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/integer_unary.h"
#include "sve/veclib/integer/integer_unary.h"

namespace quern::rows {

constexpr auto integer_unary_rows =
    group(row<S16>("Extnd12VM", "00000100 zz 010000 101 ggg nnnnn ddddd", unary<sve_sxtb_zpz>),
          row<S32>("Extnd14VM", "00000100 zz 010000 101 ggg nnnnn ddddd", unary<sve_sxtb_zpz>),
          row<S64>("Extnd18VM", "00000100 zz 010000 101 ggg nnnnn ddddd", unary<sve_sxtb_zpz>),
          row<U16>("Extnd12VM", "00000100 zz 010001 101 ggg nnnnn ddddd", library_unary<Extnd12VM>),
          row<U32>("Extnd14VM", "00000100 zz 010001 101 ggg nnnnn ddddd", library_unary<Extnd14VM>),
          row<U64>("Extnd18VM", "00000100 zz 010001 101 ggg nnnnn ddddd", library_unary<Extnd18VM>),
          row<S32>("Extnd24VM", "00000100 zz 010010 101 ggg nnnnn ddddd", unary<sve_sxth_zpz>),
          row<S64>("Extnd28VM", "00000100 zz 010010 101 ggg nnnnn ddddd", unary<sve_sxth_zpz>),
          row<U32>("Extnd24VM", "00000100 zz 010011 101 ggg nnnnn ddddd", unary<sve_uxth_zpz>),
          row<U64>("Extnd28VM", "00000100 zz 010011 101 ggg nnnnn ddddd", unary<sve_uxth_zpz>),
          row<S64>("Extnd48VM", "00000100 zz 010100 101 ggg nnnnn ddddd", unary<sve_sxtw_zpz>),
          row<U64>("Extnd48VM", "00000100 zz 010101 101 ggg nnnnn ddddd", unary<sve_uxtw_zpz>),
          row<S8, S16, S32, S64>("AbsVM", "00000100 zz 010110 101 ggg nnnnn ddddd", library_unary<AbsVM>),
          row<S8, S16, S32, S64>("NegVM", "00000100 zz 010111 101 ggg nnnnn ddddd", unary<sve_neg_zpz>),
          row<U8, U16, U32, U64>("ClsVM", "00000100 zz 011000 101 ggg nnnnn ddddd", library_unary<ClsVM>),
          row<U8, U16, U32, U64>("ClzVM", "00000100 zz 011001 101 ggg nnnnn ddddd", library_unary<ClzVM>),
          row<U8, U16, U32, U64>("CntVM", "00000100 zz 011010 101 ggg nnnnn ddddd", library_unary<CntVM>),
          row<U8, U16, U32, U64>("NotVM", "00000100 zz 011011 101 ggg nnnnn ddddd", library_unary<NotVM>),
          row<U8, U16, U32, U64>("InvVM", "00000100 zz 011110 101 ggg nnnnn ddddd", library_unary<InvVM>),
          row<U16, U32, U64>("Rev1V", "00000101 zz 100100 100 ggg nnnnn ddddd", library_unary<Rev1V>),
          row<U32, U64>("Rev2V", "00000101 zz 100101 100 ggg nnnnn ddddd", library_unary<Rev2V>),
          row<U64>("Rev4V", "00000101 zz 100110 100 ggg nnnnn ddddd", unary<sve_revw_zpz>),
          row<U8, U16, U32, U64>("RBitVM", "00000101 zz 100111 100 ggg nnnnn ddddd", unary<sve_rbit_zpz>));

}  // namespace quern::rows
