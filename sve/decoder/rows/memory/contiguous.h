// Rows of contiguous loads and stores of one register.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/contiguous.h"

namespace quern::rows {

// Field z of the single loads is the memory element and the lane as the architecture's dtype codes them; of the single
// stores, the memory element's size above the lane's; of the non-temporal ones, the element's size.
constexpr encoding ld1_imm = "1010010 zzzz 0 iiii 101 ggg nnnnn ttttt";
constexpr encoding ldnt1_imm = "1010010 zz 000 iiii 111 ggg nnnnn ttttt";
constexpr encoding st1_imm = "1110010 zzzz 0 iiii 111 ggg nnnnn ttttt";
constexpr encoding stnt1_imm = "1110010 zz 001 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld1_reg = "1010010 zzzz mmmmm 010 ggg nnnnn ttttt";
constexpr encoding ldnt1_reg = "1010010 zz 00 mmmmm 110 ggg nnnnn ttttt";
constexpr encoding st1_reg = "1110010 zzzz mmmmm 010 ggg nnnnn ttttt";
constexpr encoding stnt1_reg = "1110010 zz 00 mmmmm 011 ggg nnnnn ttttt";

constexpr auto contiguous_rows =
    group(row<U8.at(0b0000)>("CLoad1SIZ", ld1_imm, load_imm<sve_ld1b_zpri, 1>),
          row<U16.at(0b0001)>("CLoad1SIZ", ld1_imm, load_imm<sve_ld1b_h_zpri, 1>),
          row<U32.at(0b0010)>("CLoad1SIZ", ld1_imm, load_imm<sve_ld1b_s_zpri, 1>),
          row<U64.at(0b0011)>("CLoad1SIZ", ld1_imm, load_imm<sve_ld1b_d_zpri, 1>),
          row<S16.at(0b1110)>("CLoad1SIZ", ld1_imm, load_imm<sve_ld1sb_h_zpri, 1>),
          row<S32.at(0b1101)>("CLoad1SIZ", ld1_imm, load_imm<sve_ld1sb_s_zpri, 1>),
          row<S64.at(0b1100)>("CLoad1SIZ", ld1_imm, load_imm<sve_ld1sb_d_zpri, 1>),
          row<U16.at(0b0101)>("CLoad2SIZ", ld1_imm, load_imm<sve_ld1h_zpri, 2>),
          row<U32.at(0b0110)>("CLoad2SIZ", ld1_imm, load_imm<sve_ld1h_s_zpri, 2>),
          row<U64.at(0b0111)>("CLoad2SIZ", ld1_imm, load_imm<sve_ld1h_d_zpri, 2>),
          row<S32.at(0b1001)>("CLoad2SIZ", ld1_imm, load_imm<sve_ld1sh_s_zpri, 2>),
          row<S64.at(0b1000)>("CLoad2SIZ", ld1_imm, load_imm<sve_ld1sh_d_zpri, 2>),
          row<U32.at(0b1010)>("CLoad4SIZ", ld1_imm, load_imm<sve_ld1w_zpri, 4>),
          row<U64.at(0b1011)>("CLoad4SIZ", ld1_imm, load_imm<sve_ld1w_d_zpri, 4>),
          row<S64.at(0b0100)>("CLoad4SIZ", ld1_imm, load_imm<sve_ld1sw_d_zpri, 4>),
          row<U64.at(0b1111)>("CLoad8SIZ", ld1_imm, load_imm<sve_ld1d_zpri, 8>),
          row<U8>("CLoadNT1SIZ", ldnt1_imm, load_imm<sve_ldnt1b_zpri, 1>),
          row<U16>("CLoadNT2SIZ", ldnt1_imm, load_imm<sve_ldnt1h_zpri, 2>),
          row<U32>("CLoadNT4SIZ", ldnt1_imm, load_imm<sve_ldnt1w_zpri, 4>),
          row<U64>("CLoadNT8SIZ", ldnt1_imm, load_imm<sve_ldnt1d_zpri, 8>),
          row<U8.at(0b00'00)>("CStore1SIZ", st1_imm, store_imm<sve_st1b_zpri, 1>),
          row<U16.at(0b00'01)>("CStore1SIZ", st1_imm, store_imm<sve_st1b_h_zpri, 1>),
          row<U32.at(0b00'10)>("CStore1SIZ", st1_imm, store_imm<sve_st1b_s_zpri, 1>),
          row<U64.at(0b00'11)>("CStore1SIZ", st1_imm, store_imm<sve_st1b_d_zpri, 1>),
          row<U16.at(0b01'01)>("CStore2SIZ", st1_imm, store_imm<sve_st1h_zpri, 2>),
          row<U32.at(0b01'10)>("CStore2SIZ", st1_imm, store_imm<sve_st1h_s_zpri, 2>),
          row<U64.at(0b01'11)>("CStore2SIZ", st1_imm, store_imm<sve_st1h_d_zpri, 2>),
          row<U32.at(0b10'10)>("CStore4SIZ", st1_imm, store_imm<sve_st1w_zpri, 4>),
          row<U64.at(0b10'11)>("CStore4SIZ", st1_imm, store_imm<sve_st1w_d_zpri, 4>),
          row<U64.at(0b11'11)>("CStore8SIZ", st1_imm, store_imm<sve_st1d_zpri, 8>),
          row<U8>("CStoreNT1SIZ", stnt1_imm, store_imm<sve_stnt1b_zpri, 1>),
          row<U16>("CStoreNT2SIZ", stnt1_imm, store_imm<sve_stnt1h_zpri, 2>),
          row<U32>("CStoreNT4SIZ", stnt1_imm, store_imm<sve_stnt1w_zpri, 4>),
          row<U64>("CStoreNT8SIZ", stnt1_imm, store_imm<sve_stnt1d_zpri, 8>),
          row<U8.at(0b0000)>("CLoad1LSSZ", ld1_reg, load_reg<sve_ld1b_scaled_zprr, 1>),
          row<U16.at(0b0001)>("CLoad1LSSZ", ld1_reg, load_reg<sve_ld1b_h_scaled_zprr, 1>),
          row<U32.at(0b0010)>("CLoad1LSSZ", ld1_reg, load_reg<sve_ld1b_s_scaled_zprr, 1>),
          row<U64.at(0b0011)>("CLoad1LSSZ", ld1_reg, load_reg<sve_ld1b_d_scaled_zprr, 1>),
          row<S16.at(0b1110)>("CLoad1LSSZ", ld1_reg, load_reg<sve_ld1sb_h_scaled_zprr, 1>),
          row<S32.at(0b1101)>("CLoad1LSSZ", ld1_reg, load_reg<sve_ld1sb_s_scaled_zprr, 1>),
          row<S64.at(0b1100)>("CLoad1LSSZ", ld1_reg, load_reg<sve_ld1sb_d_scaled_zprr, 1>),
          row<U16.at(0b0101)>("CLoad2LSSZ", ld1_reg, load_reg<sve_ld1h_scaled_zprr, 2>),
          row<U32.at(0b0110)>("CLoad2LSSZ", ld1_reg, load_reg<sve_ld1h_s_scaled_zprr, 2>),
          row<U64.at(0b0111)>("CLoad2LSSZ", ld1_reg, load_reg<sve_ld1h_d_scaled_zprr, 2>),
          row<S32.at(0b1001)>("CLoad2LSSZ", ld1_reg, load_reg<sve_ld1sh_s_scaled_zprr, 2>),
          row<S64.at(0b1000)>("CLoad2LSSZ", ld1_reg, load_reg<sve_ld1sh_d_scaled_zprr, 2>),
          row<U32.at(0b1010)>("CLoad4LSSZ", ld1_reg, load_reg<sve_ld1w_scaled_zprr, 4>),
          row<U64.at(0b1011)>("CLoad4LSSZ", ld1_reg, load_reg<sve_ld1w_d_scaled_zprr, 4>),
          row<S64.at(0b0100)>("CLoad4LSSZ", ld1_reg, load_reg<sve_ld1sw_d_scaled_zprr, 4>),
          row<U64.at(0b1111)>("CLoad8LSSZ", ld1_reg, load_reg<sve_ld1d_scaled_zprr, 8>),
          row<U8>("CLoadNT1LSSZ", ldnt1_reg, load_reg<sve_ldnt1b_scaled_zprr, 1>),
          row<U16>("CLoadNT2LSSZ", ldnt1_reg, load_reg<sve_ldnt1h_scaled_zprr, 2>),
          row<U32>("CLoadNT4LSSZ", ldnt1_reg, load_reg<sve_ldnt1w_scaled_zprr, 4>),
          row<U64>("CLoadNT8LSSZ", ldnt1_reg, load_reg<sve_ldnt1d_scaled_zprr, 8>),
          row<U8.at(0b00'00)>("CStore1LSSZ", st1_reg, store_reg<sve_st1b_scaled_zprr, 1>),
          row<U16.at(0b00'01)>("CStore1LSSZ", st1_reg, store_reg<sve_st1b_h_scaled_zprr, 1>),
          row<U32.at(0b00'10)>("CStore1LSSZ", st1_reg, store_reg<sve_st1b_s_scaled_zprr, 1>),
          row<U64.at(0b00'11)>("CStore1LSSZ", st1_reg, store_reg<sve_st1b_d_scaled_zprr, 1>),
          row<U16.at(0b01'01)>("CStore2LSSZ", st1_reg, store_reg<sve_st1h_scaled_zprr, 2>),
          row<U32.at(0b01'10)>("CStore2LSSZ", st1_reg, store_reg<sve_st1h_s_scaled_zprr, 2>),
          row<U64.at(0b01'11)>("CStore2LSSZ", st1_reg, store_reg<sve_st1h_d_scaled_zprr, 2>),
          row<U32.at(0b10'10)>("CStore4LSSZ", st1_reg, store_reg<sve_st1w_scaled_zprr, 4>),
          row<U64.at(0b10'11)>("CStore4LSSZ", st1_reg, store_reg<sve_st1w_d_scaled_zprr, 4>),
          row<U64.at(0b11'11)>("CStore8LSSZ", st1_reg, store_reg<sve_st1d_scaled_zprr, 8>),
          row<U8>("CStoreNT1LSSZ", stnt1_reg, store_reg<sve_stnt1b_scaled_zprr, 1>),
          row<U16>("CStoreNT2LSSZ", stnt1_reg, store_reg<sve_stnt1h_scaled_zprr, 2>),
          row<U32>("CStoreNT4LSSZ", stnt1_reg, store_reg<sve_stnt1w_scaled_zprr, 4>),
          row<U64>("CStoreNT8LSSZ", stnt1_reg, store_reg<sve_stnt1d_scaled_zprr, 8>));

}  // namespace quern::rows
