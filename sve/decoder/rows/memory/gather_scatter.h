// Rows of gathers and scatters.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/gather_scatter.h"
#include "sve/veclib/memory/gather_scatter.h"

namespace quern::rows {

// Of gathers field z is the lane (1: 64 bits), the memory element's size, and whether a narrower one is zero-extended:
// S16 in 64-bit lanes is S64.at(0b1'01'0). The first-fault forms have bit 13 set. Of scatters it is the memory
// element's size; the number is that of the lane's bits, where there are both.
constexpr encoding ld_by_address = "1z00010 zz 01 iiiii 1z0 ggg nnnnn ttttt";
constexpr encoding ld_by_uxtw = "1z00010 zz 00 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ld_by_offset = "1z00010 zz 10 mmmmm 1z0 ggg nnnnn ttttt";
constexpr encoding ld_by_sxtw = "1z00010 zz 10 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ld_by_uxtw_index = "1z00010 zz 01 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ld_by_index = "1z00010 zz 11 mmmmm 1z0 ggg nnnnn ttttt";
constexpr encoding ld_by_sxtw_index = "1z00010 zz 11 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_address = "1z00010 zz 01 iiiii 1z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_uxtw = "1z00010 zz 00 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_offset = "1z00010 zz 10 mmmmm 1z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_sxtw = "1z00010 zz 10 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_uxtw_index = "1z00010 zz 01 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_index = "1z00010 zz 11 mmmmm 1z1 ggg nnnnn ttttt";
constexpr encoding ld_ff_by_sxtw_index = "1z00010 zz 11 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding st_by_address_32 = "1110010 zz 11 iiiii 101 ggg nnnnn ttttt";
constexpr encoding st_by_address_64 = "1110010 zz 10 iiiii 101 ggg nnnnn ttttt";
constexpr encoding st_by_uxtw_32 = "1110010 zz 10 mmmmm 100 ggg nnnnn ttttt";
constexpr encoding st_by_offset = "1110010 zz 00 mmmmm 101 ggg nnnnn ttttt";
constexpr encoding st_by_sxtw_32 = "1110010 zz 10 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st_by_sxtw_64 = "1110010 zz 00 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st_by_uxtw_64 = "1110010 zz 00 mmmmm 100 ggg nnnnn ttttt";
constexpr encoding st_by_uxtw_index_32 = "1110010 zz 11 mmmmm 100 ggg nnnnn ttttt";
constexpr encoding st_by_index = "1110010 zz 01 mmmmm 101 ggg nnnnn ttttt";
constexpr encoding st_by_sxtw_index_32 = "1110010 zz 11 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st_by_sxtw_index_64 = "1110010 zz 01 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st_by_uxtw_index_64 = "1110010 zz 01 mmmmm 100 ggg nnnnn ttttt";

constexpr auto gather_scatter_rows = group(
    row<S32.at(0b0'00'0)>("Load1VIZ", ld_by_address, load_address<sve_ld1sb_s_zpzi, 1>),
    row<S64.at(0b1'00'0)>("Load1VIZ", ld_by_address, load_address<sve_ld1sb_d_zpzi, 1>),
    row<U32.at(0b0'00'1)>("Load1VIZ", ld_by_address, load_address<sve_ld1b_s_zpzi, 1>),
    row<U64.at(0b1'00'1)>("Load1VIZ", ld_by_address, load_address<sve_ld1b_d_zpzi, 1>),
    row<S32.at(0b0'01'0)>("Load2VIZ", ld_by_address, load_address<sve_ld1sh_s_zpzi, 2>),
    row<S64.at(0b1'01'0)>("Load2VIZ", ld_by_address, load_address<sve_ld1sh_d_zpzi, 2>),
    row<U32.at(0b0'01'1)>("Load2VIZ", ld_by_address, load_address<sve_ld1h_s_zpzi, 2>),
    row<U64.at(0b1'01'1)>("Load2VIZ", ld_by_address, load_address<sve_ld1h_d_zpzi, 2>),
    row<S64.at(0b1'10'0)>("Load4VIZ", ld_by_address, load_address<sve_ld1sw_d_zpzi, 4>),
    row<U32.at(0b0'10'1)>("Load4VIZ", ld_by_address, load_address<sve_ld1w_zpzi, 4>),
    row<U64.at(0b1'10'1)>("Load4VIZ", ld_by_address, load_address<sve_ld1w_d_zpzi, 4>),
    row<U64.at(0b1'11'1)>("Load8VIZ", ld_by_address, load_address<sve_ld1d_zpzi, 8>),
    row<S32.at(0b0'00'0)>("Load1VSZ", ld_by_uxtw, load_offset<sve_ld1sb_s_uxtw_zpzr, 1, Zm_uxtw>),
    row<S64.at(0b1'00'0)>("Load1VSZ", ld_by_offset, load_offset<sve_ld1sb_d_zpzr, 1, Zm>),
    row<U32.at(0b0'00'1)>("Load1VSZ", ld_by_uxtw, load_offset<sve_ld1b_s_uxtw_zpzr, 1, Zm_uxtw>),
    row<U64.at(0b1'00'1)>("Load1VSZ", ld_by_offset, load_offset<sve_ld1b_d_zpzr, 1, Zm>),
    row<S32.at(0b0'01'0)>("Load2VSZ", ld_by_uxtw, load_offset<sve_ld1sh_s_uxtw_zpzr, 2, Zm_uxtw>),
    row<S64.at(0b1'01'0)>("Load2VSZ", ld_by_offset, load_offset<sve_ld1sh_d_zpzr, 2, Zm>),
    row<U32.at(0b0'01'1)>("Load2VSZ", ld_by_uxtw, load_offset<sve_ld1h_s_uxtw_zpzr, 2, Zm_uxtw>),
    row<U64.at(0b1'01'1)>("Load2VSZ", ld_by_offset, load_offset<sve_ld1h_d_zpzr, 2, Zm>),
    row<S64.at(0b1'10'0)>("Load4VSZ", ld_by_offset, load_offset<sve_ld1sw_d_zpzr, 4, Zm>),
    row<U32.at(0b0'10'1)>("Load4VSZ", ld_by_uxtw, load_offset<sve_ld1w_uxtw_zpzr, 4, Zm_uxtw>),
    row<U64.at(0b1'10'1)>("Load4VSZ", ld_by_offset, load_offset<sve_ld1w_d_zpzr, 4, Zm>),
    row<U64.at(0b1'11'1)>("Load8VSZ", ld_by_offset, load_offset<sve_ld1d_zpzr, 8, Zm>),
    row<S32.at(0b0'00'0)>("Load1XVSZ", ld_by_sxtw, load_offset<sve_ld1sb_s_sxtw_zpzr, 1, Zm_sxtw>),
    row<S64.at(0b1'00'0)>("Load1XVSZ", ld_by_sxtw, load_offset<sve_ld1sb_d_sxtw_zpzr, 1, Zm_sxtw>),
    row<U32.at(0b0'00'1)>("Load1XVSZ", ld_by_sxtw, load_offset<sve_ld1b_s_sxtw_zpzr, 1, Zm_sxtw>),
    row<U64.at(0b1'00'1)>("Load1XVSZ", ld_by_sxtw, load_offset<sve_ld1b_d_sxtw_zpzr, 1, Zm_sxtw>),
    row<S32.at(0b0'01'0)>("Load2XVSZ", ld_by_sxtw, load_offset<sve_ld1sh_s_sxtw_zpzr, 2, Zm_sxtw>),
    row<S64.at(0b1'01'0)>("Load2XVSZ", ld_by_sxtw, load_offset<sve_ld1sh_d_sxtw_zpzr, 2, Zm_sxtw>),
    row<U32.at(0b0'01'1)>("Load2XVSZ", ld_by_sxtw, load_offset<sve_ld1h_s_sxtw_zpzr, 2, Zm_sxtw>),
    row<U64.at(0b1'01'1)>("Load2XVSZ", ld_by_sxtw, load_offset<sve_ld1h_d_sxtw_zpzr, 2, Zm_sxtw>),
    row<S64.at(0b1'10'0)>("Load4XVSZ", ld_by_sxtw, load_offset<sve_ld1sw_d_sxtw_zpzr, 4, Zm_sxtw>),
    row<U32.at(0b0'10'1)>("Load4XVSZ", ld_by_sxtw, load_offset<sve_ld1w_sxtw_zpzr, 4, Zm_sxtw>),
    row<U64.at(0b1'10'1)>("Load4XVSZ", ld_by_sxtw, load_offset<sve_ld1w_d_sxtw_zpzr, 4, Zm_sxtw>),
    row<U64.at(0b1'11'1)>("Load8XVSZ", ld_by_sxtw, load_offset<sve_ld1d_sxtw_zpzr, 8, Zm_sxtw>),
    row<S64.at(0b1'00'0)>("Load1YVSZ", ld_by_uxtw, load_offset<sve_ld1sb_d_uxtw_zpzr, 1, Zm_uxtw>),
    row<U64.at(0b1'00'1)>("Load1YVSZ", ld_by_uxtw, load_offset<sve_ld1b_d_uxtw_zpzr, 1, Zm_uxtw>),
    row<S64.at(0b1'01'0)>("Load2YVSZ", ld_by_uxtw, load_offset<sve_ld1sh_d_uxtw_zpzr, 2, Zm_uxtw>),
    row<U64.at(0b1'01'1)>("Load2YVSZ", ld_by_uxtw, load_offset<sve_ld1h_d_uxtw_zpzr, 2, Zm_uxtw>),
    row<S64.at(0b1'10'0)>("Load4YVSZ", ld_by_uxtw, load_offset<sve_ld1sw_d_uxtw_zpzr, 4, Zm_uxtw>),
    row<U64.at(0b1'10'1)>("Load4YVSZ", ld_by_uxtw, load_offset<sve_ld1w_d_uxtw_zpzr, 4, Zm_uxtw>),
    row<U64.at(0b1'11'1)>("Load8YVSZ", ld_by_uxtw, load_offset<sve_ld1d_uxtw_zpzr, 8, Zm_uxtw>),
    row<S32.at(0b0'01'0)>("Load2SVZ", ld_by_uxtw_index, load_index<sve_ld1sh_s_uxtw_scaled_zprz, 2, Zm_uxtw>),
    row<S64.at(0b1'01'0)>("Load2SVZ", ld_by_index, load_index<sve_ld1sh_d_scaled_zprz, 2, Zm>),
    row<U32.at(0b0'01'1)>("Load2SVZ", ld_by_uxtw_index, load_index<sve_ld1h_s_uxtw_scaled_zprz, 2, Zm_uxtw>),
    row<U64.at(0b1'01'1)>("Load2SVZ", ld_by_index, load_index<sve_ld1h_d_scaled_zprz, 2, Zm>),
    row<S64.at(0b1'10'0)>("Load4SVZ", ld_by_index, load_index<sve_ld1sw_d_scaled_zprz, 4, Zm>),
    row<U32.at(0b0'10'1)>("Load4SVZ", ld_by_uxtw_index, load_index<sve_ld1w_uxtw_scaled_zprz, 4, Zm_uxtw>),
    row<U64.at(0b1'10'1)>("Load4SVZ", ld_by_index, load_index<sve_ld1w_d_scaled_zprz, 4, Zm>),
    row<U64.at(0b1'11'1)>("Load8SVZ", ld_by_index, load_index<sve_ld1d_scaled_zprz, 8, Zm>),
    row<S32.at(0b0'01'0)>("Load2XSVZ", ld_by_sxtw_index, load_index<sve_ld1sh_s_sxtw_scaled_zprz, 2, Zm_sxtw>),
    row<S64.at(0b1'01'0)>("Load2XSVZ", ld_by_sxtw_index, load_index<sve_ld1sh_d_sxtw_scaled_zprz, 2, Zm_sxtw>),
    row<U32.at(0b0'01'1)>("Load2XSVZ", ld_by_sxtw_index, load_index<sve_ld1h_s_sxtw_scaled_zprz, 2, Zm_sxtw>),
    row<U64.at(0b1'01'1)>("Load2XSVZ", ld_by_sxtw_index, load_index<sve_ld1h_d_sxtw_scaled_zprz, 2, Zm_sxtw>),
    row<S64.at(0b1'10'0)>("Load4XSVZ", ld_by_sxtw_index, load_index<sve_ld1sw_d_sxtw_scaled_zprz, 4, Zm_sxtw>),
    row<U32.at(0b0'10'1)>("Load4XSVZ", ld_by_sxtw_index, load_index<sve_ld1w_sxtw_scaled_zprz, 4, Zm_sxtw>),
    row<U64.at(0b1'10'1)>("Load4XSVZ", ld_by_sxtw_index, load_index<sve_ld1w_d_sxtw_scaled_zprz, 4, Zm_sxtw>),
    row<U64.at(0b1'11'1)>("Load8XSVZ", ld_by_sxtw_index, load_index<sve_ld1d_sxtw_scaled_zprz, 8, Zm_sxtw>),
    row<S64.at(0b1'01'0)>("Load2YSVZ", ld_by_uxtw_index, load_index<sve_ld1sh_d_uxtw_scaled_zprz, 2, Zm_uxtw>),
    row<U64.at(0b1'01'1)>("Load2YSVZ", ld_by_uxtw_index, load_index<sve_ld1h_d_uxtw_scaled_zprz, 2, Zm_uxtw>),
    row<S64.at(0b1'10'0)>("Load4YSVZ", ld_by_uxtw_index, load_index<sve_ld1sw_d_uxtw_scaled_zprz, 4, Zm_uxtw>),
    row<U64.at(0b1'10'1)>("Load4YSVZ", ld_by_uxtw_index, load_index<sve_ld1w_d_uxtw_scaled_zprz, 4, Zm_uxtw>),
    row<U64.at(0b1'11'1)>("Load8YSVZ", ld_by_uxtw_index, load_index<sve_ld1d_uxtw_scaled_zprz, 8, Zm_uxtw>),
    row<S32.at(0b0'00'0), S64.at(0b1'00'0), U32.at(0b0'00'1), U64.at(0b1'00'1)>("LoadFF1VIZ", ld_ff_by_address,
                                                                                first_fault_address<LoadFF1VIZ, 1>),
    row<S32.at(0b0'01'0), S64.at(0b1'01'0), U32.at(0b0'01'1), U64.at(0b1'01'1)>("LoadFF2VIZ", ld_ff_by_address,
                                                                                first_fault_address<LoadFF2VIZ, 2>),
    row<S64.at(0b1'10'0), U32.at(0b0'10'1), U64.at(0b1'10'1)>("LoadFF4VIZ", ld_ff_by_address,
                                                              first_fault_address<LoadFF4VIZ, 4>),
    row<U64.at(0b1'11'1)>("LoadFF8VIZ", ld_ff_by_address, first_fault_address<LoadFF8VIZ, 8>),
    row<S32.at(0b0'00'0), U32.at(0b0'00'1)>("LoadFF1VSZ", ld_ff_by_uxtw, first_fault_offset<LoadFF1VSZ, 1, Zm_uxtw>),
    row<S64.at(0b1'00'0), U64.at(0b1'00'1)>("LoadFF1VSZ", ld_ff_by_offset, first_fault_offset<LoadFF1VSZ, 1, Zm>),
    row<S32.at(0b0'00'0), S64.at(0b1'00'0), U32.at(0b0'00'1), U64.at(0b1'00'1)>(
        "LoadFF1XVSZ", ld_ff_by_sxtw, first_fault_offset<LoadFF1XVSZ, 1, Zm_sxtw>),
    row<S64.at(0b1'00'0), U64.at(0b1'00'1)>("LoadFF1YVSZ", ld_ff_by_uxtw, first_fault_offset<LoadFF1YVSZ, 1, Zm_uxtw>),
    row<S32.at(0b0'01'0), U32.at(0b0'01'1)>("LoadFF2VSZ", ld_ff_by_uxtw, first_fault_offset<LoadFF2VSZ, 2, Zm_uxtw>),
    row<S64.at(0b1'01'0), U64.at(0b1'01'1)>("LoadFF2VSZ", ld_ff_by_offset, first_fault_offset<LoadFF2VSZ, 2, Zm>),
    row<S32.at(0b0'01'0), S64.at(0b1'01'0), U32.at(0b0'01'1), U64.at(0b1'01'1)>(
        "LoadFF2XVSZ", ld_ff_by_sxtw, first_fault_offset<LoadFF2XVSZ, 2, Zm_sxtw>),
    row<S64.at(0b1'01'0), U64.at(0b1'01'1)>("LoadFF2YVSZ", ld_ff_by_uxtw, first_fault_offset<LoadFF2YVSZ, 2, Zm_uxtw>),
    row<U32.at(0b0'10'1)>("LoadFF4VSZ", ld_ff_by_uxtw, first_fault_offset<LoadFF4VSZ, 4, Zm_uxtw>),
    row<S64.at(0b1'10'0), U64.at(0b1'10'1)>("LoadFF4VSZ", ld_ff_by_offset, first_fault_offset<LoadFF4VSZ, 4, Zm>),
    row<S64.at(0b1'10'0), U32.at(0b0'10'1), U64.at(0b1'10'1)>("LoadFF4XVSZ", ld_ff_by_sxtw,
                                                              first_fault_offset<LoadFF4XVSZ, 4, Zm_sxtw>),
    row<S64.at(0b1'10'0), U64.at(0b1'10'1)>("LoadFF4YVSZ", ld_ff_by_uxtw, first_fault_offset<LoadFF4YVSZ, 4, Zm_uxtw>),
    row<U64.at(0b1'11'1)>("LoadFF8VSZ", ld_ff_by_offset, first_fault_offset<LoadFF8VSZ, 8, Zm>),
    row<U64.at(0b1'11'1)>("LoadFF8XVSZ", ld_ff_by_sxtw, first_fault_offset<LoadFF8XVSZ, 8, Zm_sxtw>),
    row<U64.at(0b1'11'1)>("LoadFF8YVSZ", ld_ff_by_uxtw, first_fault_offset<LoadFF8YVSZ, 8, Zm_uxtw>),
    row<S32.at(0b0'01'0), U32.at(0b0'01'1)>("LoadFF2SVZ", ld_ff_by_uxtw_index,
                                            first_fault_index<LoadFF2SVZ, 2, Zm_uxtw>),
    row<S64.at(0b1'01'0), U64.at(0b1'01'1)>("LoadFF2SVZ", ld_ff_by_index, first_fault_index<LoadFF2SVZ, 2, Zm>),
    row<S32.at(0b0'01'0), S64.at(0b1'01'0), U32.at(0b0'01'1), U64.at(0b1'01'1)>(
        "LoadFF2XSVZ", ld_ff_by_sxtw_index, first_fault_index<LoadFF2XSVZ, 2, Zm_sxtw>),
    row<S64.at(0b1'01'0), U64.at(0b1'01'1)>("LoadFF2YSVZ", ld_ff_by_uxtw_index,
                                            first_fault_index<LoadFF2YSVZ, 2, Zm_uxtw>),
    row<U32.at(0b0'10'1)>("LoadFF4SVZ", ld_ff_by_uxtw_index, first_fault_index<LoadFF4SVZ, 4, Zm_uxtw>),
    row<S64.at(0b1'10'0), U64.at(0b1'10'1)>("LoadFF4SVZ", ld_ff_by_index, first_fault_index<LoadFF4SVZ, 4, Zm>),
    row<S64.at(0b1'10'0), U32.at(0b0'10'1), U64.at(0b1'10'1)>("LoadFF4XSVZ", ld_ff_by_sxtw_index,
                                                              first_fault_index<LoadFF4XSVZ, 4, Zm_sxtw>),
    row<S64.at(0b1'10'0), U64.at(0b1'10'1)>("LoadFF4YSVZ", ld_ff_by_uxtw_index,
                                            first_fault_index<LoadFF4YSVZ, 4, Zm_uxtw>),
    row<U64.at(0b1'11'1)>("LoadFF8SVZ", ld_ff_by_index, first_fault_index<LoadFF8SVZ, 8, Zm>),
    row<U64.at(0b1'11'1)>("LoadFF8XSVZ", ld_ff_by_sxtw_index, first_fault_index<LoadFF8XSVZ, 8, Zm_sxtw>),
    row<U64.at(0b1'11'1)>("LoadFF8YSVZ", ld_ff_by_uxtw_index, first_fault_index<LoadFF8YSVZ, 8, Zm_uxtw>),
    row<U32.at(0b00)>("Store1VIZ", st_by_address_32, store_address<sve_st1b_s_zpzi, 1>),
    row<U64.at(0b00)>("Store1VIZ", st_by_address_64, store_address<sve_st1b_d_zpzi, 1>),
    row<U32.at(0b01)>("Store2VIZ", st_by_address_32, store_address<sve_st1h_s_zpzi, 2>),
    row<U64.at(0b01)>("Store2VIZ", st_by_address_64, store_address<sve_st1h_d_zpzi, 2>),
    row<U32.at(0b10)>("Store4VIZ", st_by_address_32, store_address<sve_st1w_zpzi, 4>),
    row<U64.at(0b10)>("Store4VIZ", st_by_address_64, store_address<sve_st1w_d_zpzi, 4>),
    row<U64.at(0b11)>("Store8VIZ", st_by_address_64, store_address<sve_st1d_zpzi, 8>),
    row<U32.at(0b00)>("Store1VSZ", st_by_uxtw_32, store_offset<sve_st1b_s_uxtw_zpzr, 1, Zm_uxtw>),
    row<U64.at(0b00)>("Store1VSZ", st_by_offset, store_offset<sve_st1b_d_zpzr, 1, Zm>),
    row<U32.at(0b01)>("Store2VSZ", st_by_uxtw_32, store_offset<sve_st1h_s_uxtw_zpzr, 2, Zm_uxtw>),
    row<U64.at(0b01)>("Store2VSZ", st_by_offset, store_offset<sve_st1h_d_zpzr, 2, Zm>),
    row<U32.at(0b10)>("Store4VSZ", st_by_uxtw_32, store_offset<sve_st1w_uxtw_zpzr, 4, Zm_uxtw>),
    row<U64.at(0b10)>("Store4VSZ", st_by_offset, store_offset<sve_st1w_d_zpzr, 4, Zm>),
    row<U64.at(0b11)>("Store8VSZ", st_by_offset, store_offset<sve_st1d_zpzr, 8, Zm>),
    row<U32.at(0b00)>("Store1XVSZ", st_by_sxtw_32, store_offset<sve_st1b_s_sxtw_zpzr, 1, Zm_sxtw>),
    row<U64.at(0b00)>("Store1XVSZ", st_by_sxtw_64, store_offset<sve_st1b_d_sxtw_zpzr, 1, Zm_sxtw>),
    row<U32.at(0b01)>("Store2XVSZ", st_by_sxtw_32, store_offset<sve_st1h_s_sxtw_zpzr, 2, Zm_sxtw>),
    row<U64.at(0b01)>("Store2XVSZ", st_by_sxtw_64, store_offset<sve_st1h_d_sxtw_zpzr, 2, Zm_sxtw>),
    row<U32.at(0b10)>("Store4XVSZ", st_by_sxtw_32, store_offset<sve_st1w_sxtw_zpzr, 4, Zm_sxtw>),
    row<U64.at(0b10)>("Store4XVSZ", st_by_sxtw_64, store_offset<sve_st1w_d_sxtw_zpzr, 4, Zm_sxtw>),
    row<U64.at(0b11)>("Store8XVSZ", st_by_sxtw_64, store_offset<sve_st1d_sxtw_zpzr, 8, Zm_sxtw>),
    row<U64.at(0b00)>("Store1YVSZ", st_by_uxtw_64, store_offset<sve_st1b_d_uxtw_zpzr, 1, Zm_uxtw>),
    row<U64.at(0b01)>("Store2YVSZ", st_by_uxtw_64, store_offset<sve_st1h_d_uxtw_zpzr, 2, Zm_uxtw>),
    row<U64.at(0b10)>("Store4YVSZ", st_by_uxtw_64, store_offset<sve_st1w_d_uxtw_zpzr, 4, Zm_uxtw>),
    row<U64.at(0b11)>("Store8YVSZ", st_by_uxtw_64, store_offset<sve_st1d_uxtw_zpzr, 8, Zm_uxtw>),
    row<U32.at(0b01)>("Store2SVZ", st_by_uxtw_index_32, store_index<sve_st1h_s_uxtw_scaled_zprz, 2, Zm_uxtw>),
    row<U64.at(0b01)>("Store2SVZ", st_by_index, store_index<sve_st1h_d_scaled_zprz, 2, Zm>),
    row<U32.at(0b10)>("Store4SVZ", st_by_uxtw_index_32, store_index<sve_st1w_uxtw_scaled_zprz, 4, Zm_uxtw>),
    row<U64.at(0b10)>("Store4SVZ", st_by_index, store_index<sve_st1w_d_scaled_zprz, 4, Zm>),
    row<U64.at(0b11)>("Store8SVZ", st_by_index, store_index<sve_st1d_scaled_zprz, 8, Zm>),
    row<U32.at(0b01)>("Store2XSVZ", st_by_sxtw_index_32, store_index<sve_st1h_s_sxtw_scaled_zprz, 2, Zm_sxtw>),
    row<U64.at(0b01)>("Store2XSVZ", st_by_sxtw_index_64, store_index<sve_st1h_d_sxtw_scaled_zprz, 2, Zm_sxtw>),
    row<U32.at(0b10)>("Store4XSVZ", st_by_sxtw_index_32, store_index<sve_st1w_sxtw_scaled_zprz, 4, Zm_sxtw>),
    row<U64.at(0b10)>("Store4XSVZ", st_by_sxtw_index_64, store_index<sve_st1w_d_sxtw_scaled_zprz, 4, Zm_sxtw>),
    row<U64.at(0b11)>("Store8XSVZ", st_by_sxtw_index_64, store_index<sve_st1d_sxtw_scaled_zprz, 8, Zm_sxtw>),
    row<U64.at(0b01)>("Store2YSVZ", st_by_uxtw_index_64, store_index<sve_st1h_d_uxtw_scaled_zprz, 2, Zm_uxtw>),
    row<U64.at(0b10)>("Store4YSVZ", st_by_uxtw_index_64, store_index<sve_st1w_d_uxtw_scaled_zprz, 4, Zm_uxtw>),
    row<U64.at(0b11)>("Store8YSVZ", st_by_uxtw_index_64, store_index<sve_st1d_uxtw_scaled_zprz, 8, Zm_uxtw>));

}  // namespace quern::rows
