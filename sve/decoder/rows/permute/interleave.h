// Rows of ZIP, UZP and TRN.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/permute/interleave.h"
#include "sve/veclib/permute/interleave.h"

namespace quern::rows {

constexpr auto interleave_rows =
    group(row<P8, P16, P32, P64>("Zip1PP", "00000101 zz 10 mmmm 0100000 nnnn 0 dddd", predicates<sve_zip1_ppp>),
          row<P8, P16, P32, P64>("Zip2PP", "00000101 zz 10 mmmm 0100010 nnnn 0 dddd", predicates<sve_zip2_ppp>),
          row<P8, P16, P32, P64>("Uzp1PP", "00000101 zz 10 mmmm 0100100 nnnn 0 dddd", predicates<sve_uzp1_ppp>),
          row<P8, P16, P32, P64>("Uzp2PP", "00000101 zz 10 mmmm 0100110 nnnn 0 dddd", library_predicates<Uzp2PP>),
          row<P8, P16, P32, P64>("Trn1PP", "00000101 zz 10 mmmm 0101000 nnnn 0 dddd", library_predicates<Trn1PP>),
          row<P8, P16, P32, P64>("Trn2PP", "00000101 zz 10 mmmm 0101010 nnnn 0 dddd", library_predicates<Trn2PP>),
          row<U8, U16, U32, U64>("Zip1VV", "00000101 zz 1 mmmmm 011000 nnnnn ddddd", vectors<sve_zip1_zzz>),
          row<U8, U16, U32, U64>("Zip2VV", "00000101 zz 1 mmmmm 011001 nnnnn ddddd", vectors<sve_zip2_zzz>),
          row<U8, U16, U32, U64>("Uzp1VV", "00000101 zz 1 mmmmm 011010 nnnnn ddddd", vectors<sve_uzp1_zzz>),
          row<U8, U16, U32, U64>("Uzp2VV", "00000101 zz 1 mmmmm 011011 nnnnn ddddd", vectors<sve_uzp2_zzz>),
          row<U8, U16, U32, U64>("Trn1VV", "00000101 zz 1 mmmmm 011100 nnnnn ddddd", vectors<sve_trn1_zzz>),
          row<U8, U16, U32, U64>("Trn2VV", "00000101 zz 1 mmmmm 011101 nnnnn ddddd", vectors<sve_trn2_zzz>));

}  // namespace quern::rows
