// Rows of scatters: stores with a vector of addresses, offsets or indices.
#pragma once

#include "sve/decoder/decode_row.h"
#include "sve/decoder/operands.h"
#include "sve/handlers/memory/gather_scatter.h"

namespace quern::scatters {

// Field z is the memory element's size; the number is that of the lane's bits, where there are both.
constexpr encoding by_address_32 = "1110010 zz 11 iiiii 101 ggg nnnnn ttttt";
constexpr encoding by_address_64 = "1110010 zz 10 iiiii 101 ggg nnnnn ttttt";
constexpr encoding by_offset = "1110010 zz 00 mmmmm 101 ggg nnnnn ttttt";
constexpr encoding by_uxtw_32 = "1110010 zz 10 mmmmm 100 ggg nnnnn ttttt";
constexpr encoding by_uxtw_64 = "1110010 zz 00 mmmmm 100 ggg nnnnn ttttt";
constexpr encoding by_sxtw_32 = "1110010 zz 10 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding by_sxtw_64 = "1110010 zz 00 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding by_index = "1110010 zz 01 mmmmm 101 ggg nnnnn ttttt";
constexpr encoding by_uxtw_index_32 = "1110010 zz 11 mmmmm 100 ggg nnnnn ttttt";
constexpr encoding by_uxtw_index_64 = "1110010 zz 01 mmmmm 100 ggg nnnnn ttttt";
constexpr encoding by_sxtw_index_32 = "1110010 zz 11 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding by_sxtw_index_64 = "1110010 zz 01 mmmmm 110 ggg nnnnn ttttt";

template <auto Handler, unsigned Bytes>
constexpr auto store_address = direct<Handler, Zt, Pg, Zn, imm5.times(Bytes)>;
template <auto Handler, operand Offset>
constexpr auto store_offset = direct<Handler, Zt, Pg, Offset, Xn_sp>;
template <auto Handler, operand Index>
constexpr auto store_index = direct<Handler, Zt, Pg, Xn_sp, Index>;

constexpr auto rows =
    group(row<U32.at(0b00)>("Store1VIZ", by_address_32, store_address<sve_st1b_s_zpzi, 1>),
          row<U64.at(0b00)>("Store1VIZ", by_address_64, store_address<sve_st1b_d_zpzi, 1>),
          row<U32.at(0b01)>("Store2VIZ", by_address_32, store_address<sve_st1h_s_zpzi, 2>),
          row<U64.at(0b01)>("Store2VIZ", by_address_64, store_address<sve_st1h_d_zpzi, 2>),
          row<U32.at(0b10)>("Store4VIZ", by_address_32, store_address<sve_st1w_zpzi, 4>),
          row<U64.at(0b10)>("Store4VIZ", by_address_64, store_address<sve_st1w_d_zpzi, 4>),
          row<U64.at(0b11)>("Store8VIZ", by_address_64, store_address<sve_st1d_zpzi, 8>),
          row<U32.at(0b00)>("Store1VSZ", by_uxtw_32, store_offset<sve_st1b_s_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b00)>("Store1VSZ", by_offset, store_offset<sve_st1b_d_zpzr, Zm>),
          row<U32.at(0b01)>("Store2VSZ", by_uxtw_32, store_offset<sve_st1h_s_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b01)>("Store2VSZ", by_offset, store_offset<sve_st1h_d_zpzr, Zm>),
          row<U32.at(0b10)>("Store4VSZ", by_uxtw_32, store_offset<sve_st1w_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b10)>("Store4VSZ", by_offset, store_offset<sve_st1w_d_zpzr, Zm>),
          row<U64.at(0b11)>("Store8VSZ", by_offset, store_offset<sve_st1d_zpzr, Zm>),
          row<U32.at(0b00)>("Store1XVSZ", by_sxtw_32, store_offset<sve_st1b_s_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b00)>("Store1XVSZ", by_sxtw_64, store_offset<sve_st1b_d_sxtw_zpzr, Zm_sxtw>),
          row<U32.at(0b01)>("Store2XVSZ", by_sxtw_32, store_offset<sve_st1h_s_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b01)>("Store2XVSZ", by_sxtw_64, store_offset<sve_st1h_d_sxtw_zpzr, Zm_sxtw>),
          row<U32.at(0b10)>("Store4XVSZ", by_sxtw_32, store_offset<sve_st1w_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b10)>("Store4XVSZ", by_sxtw_64, store_offset<sve_st1w_d_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b11)>("Store8XVSZ", by_sxtw_64, store_offset<sve_st1d_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b00)>("Store1YVSZ", by_uxtw_64, store_offset<sve_st1b_d_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b01)>("Store2YVSZ", by_uxtw_64, store_offset<sve_st1h_d_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b10)>("Store4YVSZ", by_uxtw_64, store_offset<sve_st1w_d_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b11)>("Store8YVSZ", by_uxtw_64, store_offset<sve_st1d_uxtw_zpzr, Zm_uxtw>),
          row<U32.at(0b01)>("Store2SVZ", by_uxtw_index_32, store_index<sve_st1h_s_uxtw_scaled_zprz, Zm_uxtw.times(2)>),
          row<U64.at(0b01)>("Store2SVZ", by_index, store_index<sve_st1h_d_scaled_zprz, Zm.times(2)>),
          row<U32.at(0b10)>("Store4SVZ", by_uxtw_index_32, store_index<sve_st1w_uxtw_scaled_zprz, Zm_uxtw.times(4)>),
          row<U64.at(0b10)>("Store4SVZ", by_index, store_index<sve_st1w_d_scaled_zprz, Zm.times(4)>),
          row<U64.at(0b11)>("Store8SVZ", by_index, store_index<sve_st1d_scaled_zprz, Zm.times(8)>),
          row<U32.at(0b01)>("Store2XSVZ", by_sxtw_index_32, store_index<sve_st1h_s_sxtw_scaled_zprz, Zm_sxtw.times(2)>),
          row<U64.at(0b01)>("Store2XSVZ", by_sxtw_index_64, store_index<sve_st1h_d_sxtw_scaled_zprz, Zm_sxtw.times(2)>),
          row<U32.at(0b10)>("Store4XSVZ", by_sxtw_index_32, store_index<sve_st1w_sxtw_scaled_zprz, Zm_sxtw.times(4)>),
          row<U64.at(0b10)>("Store4XSVZ", by_sxtw_index_64, store_index<sve_st1w_d_sxtw_scaled_zprz, Zm_sxtw.times(4)>),
          row<U64.at(0b11)>("Store8XSVZ", by_sxtw_index_64, store_index<sve_st1d_sxtw_scaled_zprz, Zm_sxtw.times(8)>),
          row<U64.at(0b01)>("Store2YSVZ", by_uxtw_index_64, store_index<sve_st1h_d_uxtw_scaled_zprz, Zm_uxtw.times(2)>),
          row<U64.at(0b10)>("Store4YSVZ", by_uxtw_index_64, store_index<sve_st1w_d_uxtw_scaled_zprz, Zm_uxtw.times(4)>),
          row<U64.at(0b11)>("Store8YSVZ", by_uxtw_index_64, store_index<sve_st1d_uxtw_scaled_zprz, Zm_uxtw.times(8)>));
}  // namespace quern::scatters
