// Rows of bitwise logic of vectors.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/integer_logic.h"

namespace quern::rows {

constexpr auto integer_logic_rows =
    group(row<U64>("OrVIX", "00000101 00 0000 iiiiiiiiiiiii ddddd", immediate<sve_orr_zi, imm13>),
          row<U64>("XorVIX", "00000101 01 0000 iiiiiiiiiiiii ddddd", immediate<sve_eor_zi, imm13>),
          row<U64>("AndVIX", "00000101 10 0000 iiiiiiiiiiiii ddddd", immediate<sve_and_zi, imm13>),
          row<U8, U16, U32, U64>("OrVVM", "00000100 zz 011000 000 ggg mmmmm ddddd", binary<sve_orr_zpz>),
          row<U8, U16, U32, U64>("XorVVM", "00000100 zz 011001 000 ggg mmmmm ddddd", binary<sve_eor_zpz>),
          row<U8, U16, U32, U64>("AndVVM", "00000100 zz 011010 000 ggg mmmmm ddddd", binary<sve_and_zpz>),
          row<U8, U16, U32, U64>("BicVVM", "00000100 zz 011011 000 ggg mmmmm ddddd", binary<sve_bic_zpz>),
          row<U64>("AndVVX", "00000100 00 1 mmmmm 001100 nnnnn ddddd", vectors<sve_and_zzz>),
          row<U64>("OrVVX", "00000100 01 1 mmmmm 001100 nnnnn ddddd", vectors<sve_orr_zzz>),
          row<U64>("XorVVX", "00000100 10 1 mmmmm 001100 nnnnn ddddd", vectors<sve_eor_zzz>),
          row<U64>("BicVVX", "00000100 11 1 mmmmm 001100 nnnnn ddddd", vectors<sve_bic_zzz>));

}  // namespace quern::rows
