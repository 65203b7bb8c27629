// Rows of loads of one element, or of one quadword, for all lanes.
#pragma once

#include "sve/decoder/rows/memory/element_type.h"
#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/broadcast.h"
#include "sve/veclib/memory/broadcast.h"

namespace quern::rows {

// Field z of the elements is the dtype; of the quadwords, the element's size.
constexpr encoding ld1rq_imm = "1010010 zz 000 iiii 001 ggg nnnnn ttttt";
constexpr encoding ld1r_imm = "1000010 zz 1 iiiiii 1 zz ggg nnnnn ttttt";
constexpr encoding ld1rq_reg = "1010010 zz 00 mmmmm 000 ggg nnnnn ttttt";

constexpr auto broadcast_rows = group(
#define ELEMENT(letters, M, T, U) \
  row<dtype<T, U>>("LoadDup" #M "SIZ", ld1r_imm, broadcast<sve_ld1r##letters##_zpri, M>),
#include "sve/handlers/memory/elements.def"
    row<U8>("LoadDup1QSIZ", ld1rq_imm, library_quadword_imm<LoadDup1QSIZ, 1>),
    row<U16>("LoadDup2QSIZ", ld1rq_imm, library_quadword_imm<LoadDup2QSIZ, 2>),
    row<U32>("LoadDup4QSIZ", ld1rq_imm, library_quadword_imm<LoadDup4QSIZ, 4>),
    row<U64>("LoadDup8QSIZ", ld1rq_imm, library_quadword_imm<LoadDup8QSIZ, 8>),
    row<U8>("LoadDup1QSSZ", ld1rq_reg, library_quadword_reg<LoadDup1QSSZ, 1>),
    row<U16>("LoadDup2QSSZ", ld1rq_reg, library_quadword_reg<LoadDup2QSSZ, 2>),
    row<U32>("LoadDup4QSSZ", ld1rq_reg, library_quadword_reg<LoadDup4QSSZ, 4>),
    row<U64>("LoadDup8QSSZ", ld1rq_reg, library_quadword_reg<LoadDup8QSSZ, 8>));

}  // namespace quern::rows
