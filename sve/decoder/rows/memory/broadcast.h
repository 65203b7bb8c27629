// Rows of loads of one element, or of one quadword, for all lanes.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/broadcast.h"
#include "sve/veclib/memory/broadcast.h"

namespace quern::rows {

// Field z of the elements is the memory element and the lane as the architecture's dtype codes them; of the quadwords,
// the element's size.
constexpr encoding ld1rq_imm = "1010010 zz 000 iiii 001 ggg nnnnn ttttt";
constexpr encoding ld1r_imm = "1000010 zz 1 iiiiii 1 zz ggg nnnnn ttttt";
constexpr encoding ld1rq_reg = "1010010 zz 00 mmmmm 000 ggg nnnnn ttttt";

constexpr auto broadcast_rows = group(row<U8>("LoadDup1QSIZ", ld1rq_imm, library_quadword_imm<LoadDup1QSIZ, 1>),
                                      row<U16>("LoadDup2QSIZ", ld1rq_imm, library_quadword_imm<LoadDup2QSIZ, 2>),
                                      row<U32>("LoadDup4QSIZ", ld1rq_imm, library_quadword_imm<LoadDup4QSIZ, 4>),
                                      row<U64>("LoadDup8QSIZ", ld1rq_imm, library_quadword_imm<LoadDup8QSIZ, 8>),
                                      row<U8.at(0b0000)>("LoadDup1SIZ", ld1r_imm, broadcast<sve_ld1rb_zpri, 1>),
                                      row<U16.at(0b0001)>("LoadDup1SIZ", ld1r_imm, broadcast<sve_ld1rb_h_zpri, 1>),
                                      row<U32.at(0b0010)>("LoadDup1SIZ", ld1r_imm, broadcast<sve_ld1rb_s_zpri, 1>),
                                      row<U64.at(0b0011)>("LoadDup1SIZ", ld1r_imm, broadcast<sve_ld1rb_d_zpri, 1>),
                                      row<S16.at(0b1110)>("LoadDup1SIZ", ld1r_imm, broadcast<sve_ld1rsb_h_zpri, 1>),
                                      row<S32.at(0b1101)>("LoadDup1SIZ", ld1r_imm, broadcast<sve_ld1rsb_s_zpri, 1>),
                                      row<S64.at(0b1100)>("LoadDup1SIZ", ld1r_imm, broadcast<sve_ld1rsb_d_zpri, 1>),
                                      row<U16.at(0b0101)>("LoadDup2SIZ", ld1r_imm, broadcast<sve_ld1rh_zpri, 2>),
                                      row<U32.at(0b0110)>("LoadDup2SIZ", ld1r_imm, broadcast<sve_ld1rh_s_zpri, 2>),
                                      row<U64.at(0b0111)>("LoadDup2SIZ", ld1r_imm, broadcast<sve_ld1rh_d_zpri, 2>),
                                      row<S32.at(0b1001)>("LoadDup2SIZ", ld1r_imm, broadcast<sve_ld1rsh_s_zpri, 2>),
                                      row<S64.at(0b1000)>("LoadDup2SIZ", ld1r_imm, broadcast<sve_ld1rsh_d_zpri, 2>),
                                      row<U32.at(0b1010)>("LoadDup4SIZ", ld1r_imm, broadcast<sve_ld1rw_zpri, 4>),
                                      row<U64.at(0b1011)>("LoadDup4SIZ", ld1r_imm, broadcast<sve_ld1rw_d_zpri, 4>),
                                      row<S64.at(0b0100)>("LoadDup4SIZ", ld1r_imm, broadcast<sve_ld1rsw_d_zpri, 4>),
                                      row<U64.at(0b1111)>("LoadDup8SIZ", ld1r_imm, broadcast<sve_ld1rd_zpri, 8>),
                                      row<U8>("LoadDup1QSSZ", ld1rq_reg, library_quadword_reg<LoadDup1QSSZ, 1>),
                                      row<U16>("LoadDup2QSSZ", ld1rq_reg, library_quadword_reg<LoadDup2QSSZ, 2>),
                                      row<U32>("LoadDup4QSSZ", ld1rq_reg, library_quadword_reg<LoadDup4QSSZ, 4>),
                                      row<U64>("LoadDup8QSSZ", ld1rq_reg, library_quadword_reg<LoadDup8QSSZ, 8>));

}  // namespace quern::rows
