// Rows of integer comparisons into a predicate.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/integer_compare.h"
#include "sve/veclib/integer/integer_compare.h"

namespace quern::rows {

constexpr auto integer_compare_rows = group(
    row<U8, U16, U32, U64>("CmpFlgGEVVZ", "00100100 zz 0 mmmmm 000 ggg nnnnn 0 dddd", compare<sve_cmphs_ppzz>),
    row<U8, U16, U32, U64>("CmpFlgGTVVZ", "00100100 zz 0 mmmmm 000 ggg nnnnn 1 dddd", compare<sve_cmphi_ppzz>),
    row<S8, S16, S32, S64>("CmpFlgGEVVZ", "00100100 zz 0 mmmmm 100 ggg nnnnn 0 dddd", compare<sve_cmpge_ppzz>),
    row<S8, S16, S32, S64>("CmpFlgGTVVZ", "00100100 zz 0 mmmmm 100 ggg nnnnn 1 dddd", compare<sve_cmpgt_ppzz>),
    row<S8, S16, S32, S64>("CmpFlgEQVVZ", "00100100 zz 0 mmmmm 101 ggg nnnnn 0 dddd", compare<sve_cmpeq_ppzz>),
    row<S8, S16, S32, S64>("CmpFlgNEVVZ", "00100100 zz 0 mmmmm 101 ggg nnnnn 1 dddd", compare<sve_cmpne_ppzz>),
    row<S8, S16, S32>("CmpFlgEQVWZ", "00100100 zz 0 mmmmm 001 ggg nnnnn 0 dddd", library_compare_wide<CmpFlgEQVWZ>),
    row<S8, S16, S32>("CmpFlgNEVWZ", "00100100 zz 0 mmmmm 001 ggg nnnnn 1 dddd", library_compare_wide<CmpFlgNEVWZ>),
    row<S8, S16, S32>("CmpFlgGEVWZ", "00100100 zz 0 mmmmm 010 ggg nnnnn 0 dddd", library_compare_wide<CmpFlgGEVWZ>),
    row<S8, S16, S32>("CmpFlgGTVWZ", "00100100 zz 0 mmmmm 010 ggg nnnnn 1 dddd", library_compare_wide<CmpFlgGTVWZ>),
    row<S8, S16, S32>("CmpFlgLTVWZ", "00100100 zz 0 mmmmm 011 ggg nnnnn 0 dddd", library_compare_wide<CmpFlgLTVWZ>),
    row<S8, S16, S32>("CmpFlgLEVWZ", "00100100 zz 0 mmmmm 011 ggg nnnnn 1 dddd", library_compare_wide<CmpFlgLEVWZ>),
    row<U8, U16, U32>("CmpFlgGEVWZ", "00100100 zz 0 mmmmm 110 ggg nnnnn 0 dddd", library_compare_wide<CmpFlgGEVWZ>),
    row<U8, U16, U32>("CmpFlgGTVWZ", "00100100 zz 0 mmmmm 110 ggg nnnnn 1 dddd", library_compare_wide<CmpFlgGTVWZ>),
    row<U8, U16, U32>("CmpFlgLTVWZ", "00100100 zz 0 mmmmm 111 ggg nnnnn 0 dddd", library_compare_wide<CmpFlgLTVWZ>),
    row<U8, U16, U32>("CmpFlgLEVWZ", "00100100 zz 0 mmmmm 111 ggg nnnnn 1 dddd", library_compare_wide<CmpFlgLEVWZ>),
    row<S8, S16, S32, S64>("CmpFlgGEVIZ", "00100101 zz 0 iiiii 000 ggg nnnnn 0 dddd", library_compare_imm<CmpFlgGEVIZ>),
    row<S8, S16, S32, S64>("CmpFlgGTVIZ", "00100101 zz 0 iiiii 000 ggg nnnnn 1 dddd", compare_imm<sve_cmpgt_ppzi>),
    row<S8, S16, S32, S64>("CmpFlgLTVIZ", "00100101 zz 0 iiiii 001 ggg nnnnn 0 dddd", compare_imm<sve_cmplt_ppzi>),
    row<S8, S16, S32, S64>("CmpFlgLEVIZ", "00100101 zz 0 iiiii 001 ggg nnnnn 1 dddd", compare_imm<sve_cmple_ppzi>),
    row<S8, S16, S32, S64>("CmpFlgEQVIZ", "00100101 zz 0 iiiii 100 ggg nnnnn 0 dddd", compare_imm<sve_cmpeq_ppzi>),
    row<S8, S16, S32, S64>("CmpFlgNEVIZ", "00100101 zz 0 iiiii 100 ggg nnnnn 1 dddd", compare_imm<sve_cmpne_ppzi>),
    row<U8, U16, U32, U64>("CmpFlgGEVIZ", "00100100 zz 1 iiiiiii 0 ggg nnnnn 0 dddd",
                           library_compare_imm7<CmpFlgGEVIZ>),
    row<U8, U16, U32, U64>("CmpFlgGTVIZ", "00100100 zz 1 iiiiiii 0 ggg nnnnn 1 dddd", compare_imm7<sve_cmphi_ppzi>),
    row<U8, U16, U32, U64>("CmpFlgLTVIZ", "00100100 zz 1 iiiiiii 1 ggg nnnnn 0 dddd", compare_imm7<sve_cmplo_ppzi>),
    row<U8, U16, U32, U64>("CmpFlgLEVIZ", "00100100 zz 1 iiiiiii 1 ggg nnnnn 1 dddd",
                           library_compare_imm7<CmpFlgLEVIZ>));

}  // namespace quern::rows
