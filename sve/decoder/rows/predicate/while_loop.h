// Rows of WHILE and CTERM.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/predicate/while_loop.h"
#include "sve/veclib/predicate/while_loop.h"

namespace quern::rows {

constexpr auto while_loop_rows = group(
    row<U32.at(0), U64.at(1)>("CTermEQ", "00100101 1z 1 mmmmm 001000 nnnnn 00000", library<CTermEQ, no_result, Rn, Rm>),
    row<U32.at(0), U64.at(1)>("CTermNE", "00100101 1z 1 mmmmm 001000 nnnnn 10000", library<CTermNE, no_result, Rn, Rm>),
    row<S8, S16, S32, S64>("While4LTSS", "00100101 zz 1 mmmmm 000001 nnnnn 0 dddd", while_w<sve_whilelt_prr>),
    row<S8, S16, S32, S64>("While4LESS", "00100101 zz 1 mmmmm 000001 nnnnn 1 dddd", library_while_w<While4LESS>),
    row<U8, U16, U32, U64>("While4LTSS", "00100101 zz 1 mmmmm 000011 nnnnn 0 dddd", while_w<sve_whilelo_prr>),
    row<U8, U16, U32, U64>("While4LESS", "00100101 zz 1 mmmmm 000011 nnnnn 1 dddd", while_w<sve_whilels_prr>),
    row<S8, S16, S32, S64>("While8LTSS", "00100101 zz 1 mmmmm 000101 nnnnn 0 dddd", while_x<sve_whilelt_prr>),
    row<S8, S16, S32, S64>("While8LESS", "00100101 zz 1 mmmmm 000101 nnnnn 1 dddd", library_while_x<While8LESS>),
    row<U8, U16, U32, U64>("While8LTSS", "00100101 zz 1 mmmmm 000111 nnnnn 0 dddd", while_x<sve_whilelo_prr>),
    row<U8, U16, U32, U64>("While8LESS", "00100101 zz 1 mmmmm 000111 nnnnn 1 dddd", while_x<sve_whilels_prr>));

}  // namespace quern::rows
