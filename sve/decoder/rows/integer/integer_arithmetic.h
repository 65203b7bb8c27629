// Rows of integer addition, subtraction, minimum, maximum and absolute difference.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/integer_arithmetic.h"
#include "sve/veclib/integer/integer_arithmetic.h"

namespace quern::rows {

constexpr auto integer_arithmetic_rows = group(
    row<U8, U16, U32, U64>("AddVIX", "00100101 zz 100000 11 iiiiiiiii ddddd", immediate<sve_add_zi, imm9_shifted>),
    row<U8, U16, U32, U64>("SubVIX", "00100101 zz 100001 11 iiiiiiiii ddddd", immediate<sve_sub_zi, imm9_shifted>),
    row<U8, U16, U32, U64>("SubRVIX", "00100101 zz 100011 11 iiiiiiiii ddddd",
                           library_immediate<SubRVIX, imm9_shifted_narrow>),
    row<S8, S16, S32, S64>("QAddVIX", "00100101 zz 100100 11 iiiiiiiii ddddd",
                           library_immediate<QAddVIX, imm9_shifted_narrow>),
    row<U8, U16, U32, U64>("QAddVIX", "00100101 zz 100101 11 iiiiiiiii ddddd",
                           library_immediate<QAddVIX, imm9_shifted_narrow>),
    row<S8, S16, S32, S64>("QSubVIX", "00100101 zz 100110 11 iiiiiiiii ddddd",
                           library_immediate<QSubVIX, imm9_shifted_narrow>),
    row<U8, U16, U32, U64>("QSubVIX", "00100101 zz 100111 11 iiiiiiiii ddddd",
                           library_immediate<QSubVIX, imm9_shifted_narrow>),
    row<U8, U16, U32, U64>("AddVVM", "00000100 zz 000000 000 ggg mmmmm ddddd", binary<sve_add_zpz>),
    row<U8, U16, U32, U64>("SubVVM", "00000100 zz 000001 000 ggg mmmmm ddddd", binary<sve_sub_zpz>),
    row<U8, U16, U32, U64>("SubRVVM", "00000100 zz 000011 000 ggg mmmmm ddddd", library_binary<SubRVVM>),
    row<S8, S16, S32, S64>("MaxVVM", "00000100 zz 001000 000 ggg mmmmm ddddd", binary<sve_smax_zpz>),
    row<U8, U16, U32, U64>("MaxVVM", "00000100 zz 001001 000 ggg mmmmm ddddd", binary<sve_umax_zpz>),
    row<S8, S16, S32, S64>("MinVVM", "00000100 zz 001010 000 ggg mmmmm ddddd", binary<sve_smin_zpz>),
    row<U8, U16, U32, U64>("MinVVM", "00000100 zz 001011 000 ggg mmmmm ddddd", binary<sve_umin_zpz>),
    row<S8, S16, S32, S64>("AbdVVM", "00000100 zz 001100 000 ggg mmmmm ddddd", library_binary<AbdVVM>),
    row<U8, U16, U32, U64>("AbdVVM", "00000100 zz 001101 000 ggg mmmmm ddddd", library_binary<AbdVVM>),
    row<S8, S16, S32, S64>("MaxVIX", "00100101 zz 101000 110 iiiiiiii ddddd", library_immediate<MaxVIX, imm8_s>),
    row<U8, U16, U32, U64>("MaxVIX", "00100101 zz 101001 110 iiiiiiii ddddd", library_immediate<MaxVIX, imm8>),
    row<S8, S16, S32, S64>("MinVIX", "00100101 zz 101010 110 iiiiiiii ddddd", library_immediate<MinVIX, imm8_s>),
    row<U8, U16, U32, U64>("MinVIX", "00100101 zz 101011 110 iiiiiiii ddddd", library_immediate<MinVIX, imm8>),
    row<U8, U16, U32, U64>("AddVVX", "00000100 zz 1 mmmmm 000000 nnnnn ddddd", vectors<sve_add_zzz>),
    row<U8, U16, U32, U64>("SubVVX", "00000100 zz 1 mmmmm 000001 nnnnn ddddd", vectors<sve_sub_zzz>),
    row<S8, S16, S32, S64>("QAddVVX", "00000100 zz 1 mmmmm 000100 nnnnn ddddd", library_vectors<QAddVVX>),
    row<U8, U16, U32, U64>("QAddVVX", "00000100 zz 1 mmmmm 000101 nnnnn ddddd", library_vectors<QAddVVX>),
    row<S8, S16, S32, S64>("QSubVVX", "00000100 zz 1 mmmmm 000110 nnnnn ddddd", library_vectors<QSubVVX>),
    row<U8, U16, U32, U64>("QSubVVX", "00000100 zz 1 mmmmm 000111 nnnnn ddddd", library_vectors<QSubVVX>));

}  // namespace quern::rows
