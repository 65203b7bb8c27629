// Rows of shifts.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/shift.h"
#include "sve/veclib/integer/shift.h"

namespace quern::rows {

constexpr auto shift_rows =
    group(row<S16>("ShrVIX", "00000100 001 1 iiii 100100 nnnnn ddddd", vector_imm<sve_asr_zzi, right16_h>),
          row<U16>("ShrVIX", "00000100 001 1 iiii 100101 nnnnn ddddd", library_vector_imm<ShrVIX, right16_h>),
          row<U16>("ShlVIX", "00000100 001 1 iiii 100111 nnnnn ddddd", vector_imm<sve_lsl_zzi, left16_h>),
          row<S64>("ShrVIX", "00000100 1i1 iiiii 100100 nnnnn ddddd", vector_imm<sve_asr_zzi, right16_d>),
          row<U64>("ShrVIX", "00000100 1i1 iiiii 100101 nnnnn ddddd", library_vector_imm<ShrVIX, right16_d>),
          row<U64>("ShlVIX", "00000100 1i1 iiiii 100111 nnnnn ddddd", vector_imm<sve_lsl_zzi, left16_d>),
          row<S8, S16, S32, S64>("ShrVVM", "00000100 zz 010000 100 ggg mmmmm ddddd", binary<sve_asr_zpz>),
          row<U8, U16, U32, U64>("ShrVVM", "00000100 zz 010001 100 ggg mmmmm ddddd", binary<sve_lsr_zpz>),
          row<U8, U16, U32, U64>("ShlVVM", "00000100 zz 010011 100 ggg mmmmm ddddd", binary<sve_lsl_zpz>),
          row<S8, S16, S32, S64>("ShrRVVM", "00000100 zz 010100 100 ggg mmmmm ddddd", library_binary<ShrRVVM>),
          row<U8, U16, U32, U64>("ShrRVVM", "00000100 zz 010101 100 ggg mmmmm ddddd", library_binary<ShrRVVM>),
          row<U8, U16, U32, U64>("ShlRVVM", "00000100 zz 010111 100 ggg mmmmm ddddd", library_binary<ShlRVVM>),
          row<S8, S16, S32>("ShrVWM", "00000100 zz 011000 100 ggg mmmmm ddddd", library_binary_wide<ShrVWM>),
          row<U8, U16, U32>("ShrVWM", "00000100 zz 011001 100 ggg mmmmm ddddd", library_binary_wide<ShrVWM>),
          row<U8, U16, U32>("ShlVWM", "00000100 zz 011011 100 ggg mmmmm ddddd", library_binary_wide<ShlVWM>),
          row<S32>("ShrVIM", "00000100 01 000000 100 ggg iiiii ddddd", binary_imm<sve_asr_zpi, right_s>),
          row<U32>("ShrVIM", "00000100 01 000001 100 ggg iiiii ddddd", library_binary_imm<ShrVIM, right_s>),
          row<U32>("ShlVIM", "00000100 01 000011 100 ggg iiiii ddddd", binary_imm<sve_lsl_zpi, left_s>),
          row<S32>("ShrDVIM", "00000100 01 000100 100 ggg iiiii ddddd", library_binary_imm<ShrDVIM, right_s>),
          row<S8>("ShrVIM", "00000100 00 000000 100 ggg 01 iii ddddd", binary_imm<sve_asr_zpi, right_b>),
          row<U8>("ShrVIM", "00000100 00 000001 100 ggg 01 iii ddddd", library_binary_imm<ShrVIM, right_b>),
          row<U8>("ShlVIM", "00000100 00 000011 100 ggg 01 iii ddddd", binary_imm<sve_lsl_zpi, left_b>),
          row<S8>("ShrDVIM", "00000100 00 000100 100 ggg 01 iii ddddd", library_binary_imm<ShrDVIM, right_b>),
          row<S16>("ShrVIM", "00000100 00 000000 100 ggg 1 iiii ddddd", binary_imm<sve_asr_zpi, right_h>),
          row<U16>("ShrVIM", "00000100 00 000001 100 ggg 1 iiii ddddd", library_binary_imm<ShrVIM, right_h>),
          row<U16>("ShlVIM", "00000100 00 000011 100 ggg 1 iiii ddddd", binary_imm<sve_lsl_zpi, left_h>),
          row<S16>("ShrDVIM", "00000100 00 000100 100 ggg 1 iiii ddddd", library_binary_imm<ShrDVIM, right_h>),
          row<S64>("ShrVIM", "00000100 1 i 000000 100 ggg iiiii ddddd", binary_imm<sve_asr_zpi, right_d>),
          row<U64>("ShrVIM", "00000100 1 i 000001 100 ggg iiiii ddddd", library_binary_imm<ShrVIM, right_d>),
          row<U64>("ShlVIM", "00000100 1 i 000011 100 ggg iiiii ddddd", binary_imm<sve_lsl_zpi, left_d>),
          row<S64>("ShrDVIM", "00000100 1 i 000100 100 ggg iiiii ddddd", library_binary_imm<ShrDVIM, right_d>),
          row<S8>("ShrVIX", "00000100 001 01 iii 100100 nnnnn ddddd", vector_imm<sve_asr_zzi, right16_b>),
          row<U8>("ShrVIX", "00000100 001 01 iii 100101 nnnnn ddddd", library_vector_imm<ShrVIX, right16_b>),
          row<U8>("ShlVIX", "00000100 001 01 iii 100111 nnnnn ddddd", vector_imm<sve_lsl_zzi, left16_b>),
          row<S8, S16, S32>("ShrVWX", "00000100 zz 1 mmmmm 100000 nnnnn ddddd", library_vectors_wide<ShrVWX>),
          row<U8, U16, U32>("ShrVWX", "00000100 zz 1 mmmmm 100001 nnnnn ddddd", library_vectors_wide<ShrVWX>),
          row<U8, U16, U32>("ShlVWX", "00000100 zz 1 mmmmm 100011 nnnnn ddddd", library_vectors_wide<ShlVWX>),
          row<S32>("ShrVIX", "00000100 011 iiiii 100100 nnnnn ddddd", vector_imm<sve_asr_zzi, right16_s>),
          row<U32>("ShrVIX", "00000100 011 iiiii 100101 nnnnn ddddd", library_vector_imm<ShrVIX, right16_s>),
          row<U32>("ShlVIX", "00000100 011 iiiii 100111 nnnnn ddddd", vector_imm<sve_lsl_zzi, left16_s>));

}  // namespace quern::rows
