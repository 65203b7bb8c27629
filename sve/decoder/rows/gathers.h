// Rows of gathers: loads with a vector of addresses, offsets or indices.
#pragma once

#include "sve/decoder/decode_row.h"
#include "sve/decoder/operands.h"
#include "sve/handlers/memory/gather_scatter.h"

namespace quern::gathers {

// Field z is the lane (1: 64 bits), the memory element's size, and whether a narrower one is zero-extended: S16 in
// 64-bit lanes is S64.at(0b1'01'0). The first-fault forms have bit 13 set.
constexpr encoding by_address = "1z00010 zz 01 iiiii 1z0 ggg nnnnn ttttt";
constexpr encoding by_offset = "1z00010 zz 10 mmmmm 1z0 ggg nnnnn ttttt";
constexpr encoding by_uxtw = "1z00010 zz 00 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding by_sxtw = "1z00010 zz 10 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding by_index = "1z00010 zz 11 mmmmm 1z0 ggg nnnnn ttttt";
constexpr encoding by_uxtw_index = "1z00010 zz 01 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding by_sxtw_index = "1z00010 zz 11 mmmmm 0z0 ggg nnnnn ttttt";
constexpr encoding ff_by_address = "1z00010 zz 01 iiiii 1z1 ggg nnnnn ttttt";
constexpr encoding ff_by_offset = "1z00010 zz 10 mmmmm 1z1 ggg nnnnn ttttt";
constexpr encoding ff_by_uxtw = "1z00010 zz 00 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ff_by_sxtw = "1z00010 zz 10 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ff_by_index = "1z00010 zz 11 mmmmm 1z1 ggg nnnnn ttttt";
constexpr encoding ff_by_uxtw_index = "1z00010 zz 01 mmmmm 0z1 ggg nnnnn ttttt";
constexpr encoding ff_by_sxtw_index = "1z00010 zz 11 mmmmm 0z1 ggg nnnnn ttttt";

template <auto Handler, unsigned Bytes>
constexpr auto load_address = direct<Handler, Zt, Pg_z, Zn, imm5.times(Bytes)>;
template <auto Handler, operand Offset>
constexpr auto load_offset = direct<Handler, Zt, Pg_z, Offset, Xn_sp>;
template <auto Handler, operand Index>
constexpr auto load_index = direct<Handler, Zt, Pg_z, Xn_sp, Index>;
template <operand Offset>
constexpr auto library_load = library<Zt, Pg_z, Xn_sp, Offset>;

constexpr auto gathers_by_address =
    group(row<S32.at(0b0'00'0)>("Load1VIZ", by_address, load_address<sve_ld1sb_s_zpzi, 1>),
          row<S64.at(0b1'00'0)>("Load1VIZ", by_address, load_address<sve_ld1sb_d_zpzi, 1>),
          row<U32.at(0b0'00'1)>("Load1VIZ", by_address, load_address<sve_ld1b_s_zpzi, 1>),
          row<U64.at(0b1'00'1)>("Load1VIZ", by_address, load_address<sve_ld1b_d_zpzi, 1>),
          row<S32.at(0b0'01'0)>("Load2VIZ", by_address, load_address<sve_ld1sh_s_zpzi, 2>),
          row<S64.at(0b1'01'0)>("Load2VIZ", by_address, load_address<sve_ld1sh_d_zpzi, 2>),
          row<U32.at(0b0'01'1)>("Load2VIZ", by_address, load_address<sve_ld1h_s_zpzi, 2>),
          row<U64.at(0b1'01'1)>("Load2VIZ", by_address, load_address<sve_ld1h_d_zpzi, 2>),
          row<S64.at(0b1'10'0)>("Load4VIZ", by_address, load_address<sve_ld1sw_d_zpzi, 4>),
          row<U32.at(0b0'10'1)>("Load4VIZ", by_address, load_address<sve_ld1w_zpzi, 4>),
          row<U64.at(0b1'10'1)>("Load4VIZ", by_address, load_address<sve_ld1w_d_zpzi, 4>),
          row<U64.at(0b1'11'1)>("Load8VIZ", by_address, load_address<sve_ld1d_zpzi, 8>));

constexpr auto gathers_by_offset =
    group(row<S32.at(0b0'00'0)>("Load1VSZ", by_uxtw, load_offset<sve_ld1sb_s_uxtw_zpzr, Zm_uxtw>),
          row<S64.at(0b1'00'0)>("Load1VSZ", by_offset, load_offset<sve_ld1sb_d_zpzr, Zm>),
          row<U32.at(0b0'00'1)>("Load1VSZ", by_uxtw, load_offset<sve_ld1b_s_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b1'00'1)>("Load1VSZ", by_offset, load_offset<sve_ld1b_d_zpzr, Zm>),
          row<S32.at(0b0'01'0)>("Load2VSZ", by_uxtw, load_offset<sve_ld1sh_s_uxtw_zpzr, Zm_uxtw>),
          row<S64.at(0b1'01'0)>("Load2VSZ", by_offset, load_offset<sve_ld1sh_d_zpzr, Zm>),
          row<U32.at(0b0'01'1)>("Load2VSZ", by_uxtw, load_offset<sve_ld1h_s_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b1'01'1)>("Load2VSZ", by_offset, load_offset<sve_ld1h_d_zpzr, Zm>),
          row<S64.at(0b1'10'0)>("Load4VSZ", by_offset, load_offset<sve_ld1sw_d_zpzr, Zm>),
          row<U32.at(0b0'10'1)>("Load4VSZ", by_uxtw, load_offset<sve_ld1w_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b1'10'1)>("Load4VSZ", by_offset, load_offset<sve_ld1w_d_zpzr, Zm>),
          row<U64.at(0b1'11'1)>("Load8VSZ", by_offset, load_offset<sve_ld1d_zpzr, Zm>),
          row<S32.at(0b0'00'0)>("Load1XVSZ", by_sxtw, load_offset<sve_ld1sb_s_sxtw_zpzr, Zm_sxtw>),
          row<S64.at(0b1'00'0)>("Load1XVSZ", by_sxtw, load_offset<sve_ld1sb_d_sxtw_zpzr, Zm_sxtw>),
          row<U32.at(0b0'00'1)>("Load1XVSZ", by_sxtw, load_offset<sve_ld1b_s_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b1'00'1)>("Load1XVSZ", by_sxtw, load_offset<sve_ld1b_d_sxtw_zpzr, Zm_sxtw>),
          row<S32.at(0b0'01'0)>("Load2XVSZ", by_sxtw, load_offset<sve_ld1sh_s_sxtw_zpzr, Zm_sxtw>),
          row<S64.at(0b1'01'0)>("Load2XVSZ", by_sxtw, load_offset<sve_ld1sh_d_sxtw_zpzr, Zm_sxtw>),
          row<U32.at(0b0'01'1)>("Load2XVSZ", by_sxtw, load_offset<sve_ld1h_s_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b1'01'1)>("Load2XVSZ", by_sxtw, load_offset<sve_ld1h_d_sxtw_zpzr, Zm_sxtw>),
          row<S64.at(0b1'10'0)>("Load4XVSZ", by_sxtw, load_offset<sve_ld1sw_d_sxtw_zpzr, Zm_sxtw>),
          row<U32.at(0b0'10'1)>("Load4XVSZ", by_sxtw, load_offset<sve_ld1w_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b1'10'1)>("Load4XVSZ", by_sxtw, load_offset<sve_ld1w_d_sxtw_zpzr, Zm_sxtw>),
          row<U64.at(0b1'11'1)>("Load8XVSZ", by_sxtw, load_offset<sve_ld1d_sxtw_zpzr, Zm_sxtw>),
          row<S64.at(0b1'00'0)>("Load1YVSZ", by_uxtw, load_offset<sve_ld1sb_d_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b1'00'1)>("Load1YVSZ", by_uxtw, load_offset<sve_ld1b_d_uxtw_zpzr, Zm_uxtw>),
          row<S64.at(0b1'01'0)>("Load2YVSZ", by_uxtw, load_offset<sve_ld1sh_d_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b1'01'1)>("Load2YVSZ", by_uxtw, load_offset<sve_ld1h_d_uxtw_zpzr, Zm_uxtw>),
          row<S64.at(0b1'10'0)>("Load4YVSZ", by_uxtw, load_offset<sve_ld1sw_d_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b1'10'1)>("Load4YVSZ", by_uxtw, load_offset<sve_ld1w_d_uxtw_zpzr, Zm_uxtw>),
          row<U64.at(0b1'11'1)>("Load8YVSZ", by_uxtw, load_offset<sve_ld1d_uxtw_zpzr, Zm_uxtw>));

constexpr auto gathers_by_index =
    group(row<S32.at(0b0'01'0)>("Load2SVZ", by_uxtw_index, load_index<sve_ld1sh_s_uxtw_scaled_zprz, Zm_uxtw.times(2)>),
          row<S64.at(0b1'01'0)>("Load2SVZ", by_index, load_index<sve_ld1sh_d_scaled_zprz, Zm.times(2)>),
          row<U32.at(0b0'01'1)>("Load2SVZ", by_uxtw_index, load_index<sve_ld1h_s_uxtw_scaled_zprz, Zm_uxtw.times(2)>),
          row<U64.at(0b1'01'1)>("Load2SVZ", by_index, load_index<sve_ld1h_d_scaled_zprz, Zm.times(2)>),
          row<S64.at(0b1'10'0)>("Load4SVZ", by_index, load_index<sve_ld1sw_d_scaled_zprz, Zm.times(4)>),
          row<U32.at(0b0'10'1)>("Load4SVZ", by_uxtw_index, load_index<sve_ld1w_uxtw_scaled_zprz, Zm_uxtw.times(4)>),
          row<U64.at(0b1'10'1)>("Load4SVZ", by_index, load_index<sve_ld1w_d_scaled_zprz, Zm.times(4)>),
          row<U64.at(0b1'11'1)>("Load8SVZ", by_index, load_index<sve_ld1d_scaled_zprz, Zm.times(8)>),
          row<S32.at(0b0'01'0)>("Load2XSVZ", by_sxtw_index, load_index<sve_ld1sh_s_sxtw_scaled_zprz, Zm_sxtw.times(2)>),
          row<S64.at(0b1'01'0)>("Load2XSVZ", by_sxtw_index, load_index<sve_ld1sh_d_sxtw_scaled_zprz, Zm_sxtw.times(2)>),
          row<U32.at(0b0'01'1)>("Load2XSVZ", by_sxtw_index, load_index<sve_ld1h_s_sxtw_scaled_zprz, Zm_sxtw.times(2)>),
          row<U64.at(0b1'01'1)>("Load2XSVZ", by_sxtw_index, load_index<sve_ld1h_d_sxtw_scaled_zprz, Zm_sxtw.times(2)>),
          row<S64.at(0b1'10'0)>("Load4XSVZ", by_sxtw_index, load_index<sve_ld1sw_d_sxtw_scaled_zprz, Zm_sxtw.times(4)>),
          row<U32.at(0b0'10'1)>("Load4XSVZ", by_sxtw_index, load_index<sve_ld1w_sxtw_scaled_zprz, Zm_sxtw.times(4)>),
          row<U64.at(0b1'10'1)>("Load4XSVZ", by_sxtw_index, load_index<sve_ld1w_d_sxtw_scaled_zprz, Zm_sxtw.times(4)>),
          row<U64.at(0b1'11'1)>("Load8XSVZ", by_sxtw_index, load_index<sve_ld1d_sxtw_scaled_zprz, Zm_sxtw.times(8)>),
          row<S64.at(0b1'01'0)>("Load2YSVZ", by_uxtw_index, load_index<sve_ld1sh_d_uxtw_scaled_zprz, Zm_uxtw.times(2)>),
          row<U64.at(0b1'01'1)>("Load2YSVZ", by_uxtw_index, load_index<sve_ld1h_d_uxtw_scaled_zprz, Zm_uxtw.times(2)>),
          row<S64.at(0b1'10'0)>("Load4YSVZ", by_uxtw_index, load_index<sve_ld1sw_d_uxtw_scaled_zprz, Zm_uxtw.times(4)>),
          row<U64.at(0b1'10'1)>("Load4YSVZ", by_uxtw_index, load_index<sve_ld1w_d_uxtw_scaled_zprz, Zm_uxtw.times(4)>),
          row<U64.at(0b1'11'1)>("Load8YSVZ", by_uxtw_index, load_index<sve_ld1d_uxtw_scaled_zprz, Zm_uxtw.times(8)>));

constexpr auto first_fault_gathers =
    group(row<S32.at(0b0'00'0), S64.at(0b1'00'0), U32.at(0b0'00'1), U64.at(0b1'00'1)>(
              "LoadFF1VIZ", ff_by_address, library<Zt, Pg_z, Zn, imm5.times(1)>),
          row<S32.at(0b0'01'0), S64.at(0b1'01'0), U32.at(0b0'01'1), U64.at(0b1'01'1)>(
              "LoadFF2VIZ", ff_by_address, library<Zt, Pg_z, Zn, imm5.times(2)>),
          row<S64.at(0b1'10'0), U32.at(0b0'10'1), U64.at(0b1'10'1)>("LoadFF4VIZ", ff_by_address,
                                                                    library<Zt, Pg_z, Zn, imm5.times(4)>),
          row<U64.at(0b1'11'1)>("LoadFF8VIZ", ff_by_address, library<Zt, Pg_z, Zn, imm5.times(8)>),
          row<S32.at(0b0'00'0), U32.at(0b0'00'1)>("LoadFF1VSZ", ff_by_uxtw, library_load<Zm_uxtw>),
          row<S64.at(0b1'00'0), U64.at(0b1'00'1)>("LoadFF1VSZ", ff_by_offset, library_load<Zm>),
          row<S32.at(0b0'00'0), S64.at(0b1'00'0), U32.at(0b0'00'1), U64.at(0b1'00'1)>("LoadFF1XVSZ", ff_by_sxtw,
                                                                                      library_load<Zm_sxtw>),
          row<S64.at(0b1'00'0), U64.at(0b1'00'1)>("LoadFF1YVSZ", ff_by_uxtw, library_load<Zm_uxtw>),
          row<S32.at(0b0'01'0), U32.at(0b0'01'1)>("LoadFF2VSZ", ff_by_uxtw, library_load<Zm_uxtw>),
          row<S64.at(0b1'01'0), U64.at(0b1'01'1)>("LoadFF2VSZ", ff_by_offset, library_load<Zm>),
          row<S32.at(0b0'01'0), S64.at(0b1'01'0), U32.at(0b0'01'1), U64.at(0b1'01'1)>("LoadFF2XVSZ", ff_by_sxtw,
                                                                                      library_load<Zm_sxtw>),
          row<S64.at(0b1'01'0), U64.at(0b1'01'1)>("LoadFF2YVSZ", ff_by_uxtw, library_load<Zm_uxtw>),
          row<U32.at(0b0'10'1)>("LoadFF4VSZ", ff_by_uxtw, library_load<Zm_uxtw>),
          row<S64.at(0b1'10'0), U64.at(0b1'10'1)>("LoadFF4VSZ", ff_by_offset, library_load<Zm>),
          row<S64.at(0b1'10'0), U32.at(0b0'10'1), U64.at(0b1'10'1)>("LoadFF4XVSZ", ff_by_sxtw, library_load<Zm_sxtw>),
          row<S64.at(0b1'10'0), U64.at(0b1'10'1)>("LoadFF4YVSZ", ff_by_uxtw, library_load<Zm_uxtw>),
          row<U64.at(0b1'11'1)>("LoadFF8VSZ", ff_by_offset, library_load<Zm>),
          row<U64.at(0b1'11'1)>("LoadFF8XVSZ", ff_by_sxtw, library_load<Zm_sxtw>),
          row<U64.at(0b1'11'1)>("LoadFF8YVSZ", ff_by_uxtw, library_load<Zm_uxtw>),
          row<S32.at(0b0'01'0), U32.at(0b0'01'1)>("LoadFF2SVZ", ff_by_uxtw_index, library_load<Zm_uxtw.times(2)>),
          row<S64.at(0b1'01'0), U64.at(0b1'01'1)>("LoadFF2SVZ", ff_by_index, library_load<Zm.times(2)>),
          row<S32.at(0b0'01'0), S64.at(0b1'01'0), U32.at(0b0'01'1), U64.at(0b1'01'1)>("LoadFF2XSVZ", ff_by_sxtw_index,
                                                                                      library_load<Zm_sxtw.times(2)>),
          row<S64.at(0b1'01'0), U64.at(0b1'01'1)>("LoadFF2YSVZ", ff_by_uxtw_index, library_load<Zm_uxtw.times(2)>),
          row<U32.at(0b0'10'1)>("LoadFF4SVZ", ff_by_uxtw_index, library_load<Zm_uxtw.times(4)>),
          row<S64.at(0b1'10'0), U64.at(0b1'10'1)>("LoadFF4SVZ", ff_by_index, library_load<Zm.times(4)>),
          row<S64.at(0b1'10'0), U32.at(0b0'10'1), U64.at(0b1'10'1)>("LoadFF4XSVZ", ff_by_sxtw_index,
                                                                    library_load<Zm_sxtw.times(4)>),
          row<S64.at(0b1'10'0), U64.at(0b1'10'1)>("LoadFF4YSVZ", ff_by_uxtw_index, library_load<Zm_uxtw.times(4)>),
          row<U64.at(0b1'11'1)>("LoadFF8SVZ", ff_by_index, library_load<Zm.times(8)>),
          row<U64.at(0b1'11'1)>("LoadFF8XSVZ", ff_by_sxtw_index, library_load<Zm_sxtw.times(8)>),
          row<U64.at(0b1'11'1)>("LoadFF8YSVZ", ff_by_uxtw_index, library_load<Zm_uxtw.times(8)>));
constexpr auto rows = group(gathers_by_address, gathers_by_offset, gathers_by_index, first_fault_gathers);

}  // namespace quern::gathers
