// Rows of loads and stores of structures.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/structure.h"

namespace quern::rows {

// Field z is the element's size.
constexpr encoding ld2_imm = "1010010 zz 010 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld3_imm = "1010010 zz 100 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld4_imm = "1010010 zz 110 iiii 111 ggg nnnnn ttttt";
constexpr encoding st2_imm = "1110010 zz 011 iiii 111 ggg nnnnn ttttt";
constexpr encoding st3_imm = "1110010 zz 101 iiii 111 ggg nnnnn ttttt";
constexpr encoding st4_imm = "1110010 zz 111 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld2_reg = "1010010 zz 01 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding ld3_reg = "1010010 zz 10 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding ld4_reg = "1010010 zz 11 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st2_reg = "1110010 zz 01 mmmmm 011 ggg nnnnn ttttt";
constexpr encoding st3_reg = "1110010 zz 10 mmmmm 011 ggg nnnnn ttttt";
constexpr encoding st4_reg = "1110010 zz 11 mmmmm 011 ggg nnnnn ttttt";

constexpr auto structure_rows = group(row<U8>("E2Load1SIZ", ld2_imm, load_imm<sve_ld2b_zpri, 1, 2>),
                                      row<U16>("E2Load2SIZ", ld2_imm, load_imm<sve_ld2h_zpri, 2, 2>),
                                      row<U32>("E2Load4SIZ", ld2_imm, load_imm<sve_ld2w_zpri, 4, 2>),
                                      row<U64>("E2Load8SIZ", ld2_imm, load_imm<sve_ld2d_zpri, 8, 2>),
                                      row<U8>("E3Load1SIZ", ld3_imm, load_imm<sve_ld3b_zpri, 1, 3>),
                                      row<U16>("E3Load2SIZ", ld3_imm, load_imm<sve_ld3h_zpri, 2, 3>),
                                      row<U32>("E3Load4SIZ", ld3_imm, load_imm<sve_ld3w_zpri, 4, 3>),
                                      row<U64>("E3Load8SIZ", ld3_imm, load_imm<sve_ld3d_zpri, 8, 3>),
                                      row<U8>("E4Load1SIZ", ld4_imm, load_imm<sve_ld4b_zpri, 1, 4>),
                                      row<U16>("E4Load2SIZ", ld4_imm, load_imm<sve_ld4h_zpri, 2, 4>),
                                      row<U32>("E4Load4SIZ", ld4_imm, load_imm<sve_ld4w_zpri, 4, 4>),
                                      row<U64>("E4Load8SIZ", ld4_imm, load_imm<sve_ld4d_zpri, 8, 4>),
                                      row<U8>("E2Store1SIZ", st2_imm, store_imm<sve_st2b_zpri, 1, 2>),
                                      row<U16>("E2Store2SIZ", st2_imm, store_imm<sve_st2h_zpri, 2, 2>),
                                      row<U32>("E2Store4SIZ", st2_imm, store_imm<sve_st2w_zpri, 4, 2>),
                                      row<U64>("E2Store8SIZ", st2_imm, store_imm<sve_st2d_zpri, 8, 2>),
                                      row<U8>("E3Store1SIZ", st3_imm, store_imm<sve_st3b_zpri, 1, 3>),
                                      row<U16>("E3Store2SIZ", st3_imm, store_imm<sve_st3h_zpri, 2, 3>),
                                      row<U32>("E3Store4SIZ", st3_imm, store_imm<sve_st3w_zpri, 4, 3>),
                                      row<U64>("E3Store8SIZ", st3_imm, store_imm<sve_st3d_zpri, 8, 3>),
                                      row<U8>("E4Store1SIZ", st4_imm, store_imm<sve_st4b_zpri, 1, 4>),
                                      row<U16>("E4Store2SIZ", st4_imm, store_imm<sve_st4h_zpri, 2, 4>),
                                      row<U32>("E4Store4SIZ", st4_imm, store_imm<sve_st4w_zpri, 4, 4>),
                                      row<U64>("E4Store8SIZ", st4_imm, store_imm<sve_st4d_zpri, 8, 4>),
                                      row<U8>("E2Load1LSSZ", ld2_reg, load_reg<sve_ld2b_scaled_zprr, 1, 2>),
                                      row<U16>("E2Load2LSSZ", ld2_reg, load_reg<sve_ld2h_scaled_zprr, 2, 2>),
                                      row<U32>("E2Load4LSSZ", ld2_reg, load_reg<sve_ld2w_scaled_zprr, 4, 2>),
                                      row<U64>("E2Load8LSSZ", ld2_reg, load_reg<sve_ld2d_scaled_zprr, 8, 2>),
                                      row<U8>("E3Load1LSSZ", ld3_reg, load_reg<sve_ld3b_scaled_zprr, 1, 3>),
                                      row<U16>("E3Load2LSSZ", ld3_reg, load_reg<sve_ld3h_scaled_zprr, 2, 3>),
                                      row<U32>("E3Load4LSSZ", ld3_reg, load_reg<sve_ld3w_scaled_zprr, 4, 3>),
                                      row<U64>("E3Load8LSSZ", ld3_reg, load_reg<sve_ld3d_scaled_zprr, 8, 3>),
                                      row<U8>("E4Load1LSSZ", ld4_reg, load_reg<sve_ld4b_scaled_zprr, 1, 4>),
                                      row<U16>("E4Load2LSSZ", ld4_reg, load_reg<sve_ld4h_scaled_zprr, 2, 4>),
                                      row<U32>("E4Load4LSSZ", ld4_reg, load_reg<sve_ld4w_scaled_zprr, 4, 4>),
                                      row<U64>("E4Load8LSSZ", ld4_reg, load_reg<sve_ld4d_scaled_zprr, 8, 4>),
                                      row<U8>("E2Store1LSSZ", st2_reg, store_reg<sve_st2b_scaled_zprr, 1, 2>),
                                      row<U16>("E2Store2LSSZ", st2_reg, store_reg<sve_st2h_scaled_zprr, 2, 2>),
                                      row<U32>("E2Store4LSSZ", st2_reg, store_reg<sve_st2w_scaled_zprr, 4, 2>),
                                      row<U64>("E2Store8LSSZ", st2_reg, store_reg<sve_st2d_scaled_zprr, 8, 2>),
                                      row<U8>("E3Store1LSSZ", st3_reg, store_reg<sve_st3b_scaled_zprr, 1, 3>),
                                      row<U16>("E3Store2LSSZ", st3_reg, store_reg<sve_st3h_scaled_zprr, 2, 3>),
                                      row<U32>("E3Store4LSSZ", st3_reg, store_reg<sve_st3w_scaled_zprr, 4, 3>),
                                      row<U64>("E3Store8LSSZ", st3_reg, store_reg<sve_st3d_scaled_zprr, 8, 3>),
                                      row<U8>("E4Store1LSSZ", st4_reg, store_reg<sve_st4b_scaled_zprr, 1, 4>),
                                      row<U16>("E4Store2LSSZ", st4_reg, store_reg<sve_st4h_scaled_zprr, 2, 4>),
                                      row<U32>("E4Store4LSSZ", st4_reg, store_reg<sve_st4w_scaled_zprr, 4, 4>),
                                      row<U64>("E4Store8LSSZ", st4_reg, store_reg<sve_st4d_scaled_zprr, 8, 4>));

}  // namespace quern::rows
