// Rows of contiguous memory instructions with a scalar offset: loads and stores of vectors and structures.
#pragma once

#include "sve/decoder/decode_row.h"
#include "sve/decoder/operands.h"
#include "sve/handlers/memory/contiguous.h"
#include "sve/handlers/memory/fault_tolerant.h"
#include "sve/handlers/memory/structure.h"

namespace quern::scalar_offset {

// Field z of the single loads is the memory element and the lane as the architecture's dtype codes them; of the single
// stores, the memory element's size above the lane's; of the others, the element's size.
constexpr encoding ld1 = "1010010 zzzz mmmmm 010 ggg nnnnn ttttt", ldff1 = "1010010 zzzz mmmmm 011 ggg nnnnn ttttt";
constexpr encoding st1 = "1110010 zzzz mmmmm 010 ggg nnnnn ttttt";
constexpr encoding ldnt1 = "1010010 zz 00 mmmmm 110 ggg nnnnn ttttt", stnt1 = "1110010 zz 00 mmmmm 011 ggg nnnnn ttttt";
constexpr encoding ld2 = "1010010 zz 01 mmmmm 110 ggg nnnnn ttttt", st2 = "1110010 zz 01 mmmmm 011 ggg nnnnn ttttt";
constexpr encoding ld3 = "1010010 zz 10 mmmmm 110 ggg nnnnn ttttt", st3 = "1110010 zz 10 mmmmm 011 ggg nnnnn ttttt";
constexpr encoding ld4 = "1010010 zz 11 mmmmm 110 ggg nnnnn ttttt", st4 = "1110010 zz 11 mmmmm 011 ggg nnnnn ttttt";
constexpr encoding ld1rq = "1010010 zz 00 mmmmm 000 ggg nnnnn ttttt";

template <auto Handler, unsigned Bytes, unsigned Registers = 1>
constexpr auto load = direct<Handler, Zt.times(Registers), Pg_z, Xn_sp, Xm.times(Bytes)>;
template <auto Handler, unsigned Bytes, unsigned Registers = 1>
constexpr auto store = direct<Handler, Zt.times(Registers), Pg, Xn_sp, Xm.times(Bytes)>;
template <unsigned Bytes>
constexpr auto library_load = library<Zt, Pg_z, Xn_sp, Xm.times(Bytes)>;

constexpr auto loads = group(row<U8.at(0b0000)>("CLoad1LSSZ", ld1, load<sve_ld1b_scaled_zprr, 1>),
                             row<U16.at(0b0001)>("CLoad1LSSZ", ld1, load<sve_ld1b_h_scaled_zprr, 1>),
                             row<U32.at(0b0010)>("CLoad1LSSZ", ld1, load<sve_ld1b_s_scaled_zprr, 1>),
                             row<U64.at(0b0011)>("CLoad1LSSZ", ld1, load<sve_ld1b_d_scaled_zprr, 1>),
                             row<S16.at(0b1110)>("CLoad1LSSZ", ld1, load<sve_ld1sb_h_scaled_zprr, 1>),
                             row<S32.at(0b1101)>("CLoad1LSSZ", ld1, load<sve_ld1sb_s_scaled_zprr, 1>),
                             row<S64.at(0b1100)>("CLoad1LSSZ", ld1, load<sve_ld1sb_d_scaled_zprr, 1>),
                             row<U16.at(0b0101)>("CLoad2LSSZ", ld1, load<sve_ld1h_scaled_zprr, 2>),
                             row<U32.at(0b0110)>("CLoad2LSSZ", ld1, load<sve_ld1h_s_scaled_zprr, 2>),
                             row<U64.at(0b0111)>("CLoad2LSSZ", ld1, load<sve_ld1h_d_scaled_zprr, 2>),
                             row<S32.at(0b1001)>("CLoad2LSSZ", ld1, load<sve_ld1sh_s_scaled_zprr, 2>),
                             row<S64.at(0b1000)>("CLoad2LSSZ", ld1, load<sve_ld1sh_d_scaled_zprr, 2>),
                             row<U32.at(0b1010)>("CLoad4LSSZ", ld1, load<sve_ld1w_scaled_zprr, 4>),
                             row<U64.at(0b1011)>("CLoad4LSSZ", ld1, load<sve_ld1w_d_scaled_zprr, 4>),
                             row<S64.at(0b0100)>("CLoad4LSSZ", ld1, load<sve_ld1sw_d_scaled_zprr, 4>),
                             row<U64.at(0b1111)>("CLoad8LSSZ", ld1, load<sve_ld1d_scaled_zprr, 8>));

constexpr auto first_fault_loads = group(row<U8.at(0b0000)>("CLoadFF1LSSZ", ldff1, load<sve_ldff1b_scaled_zprr, 1>),
                                         row<U16.at(0b0001)>("CLoadFF1LSSZ", ldff1, load<sve_ldff1b_h_scaled_zprr, 1>),
                                         row<U32.at(0b0010)>("CLoadFF1LSSZ", ldff1, load<sve_ldff1b_s_scaled_zprr, 1>),
                                         row<U64.at(0b0011)>("CLoadFF1LSSZ", ldff1, load<sve_ldff1b_d_scaled_zprr, 1>),
                                         row<S16.at(0b1110)>("CLoadFF1LSSZ", ldff1, library_load<1>),
                                         row<S32.at(0b1101)>("CLoadFF1LSSZ", ldff1, library_load<1>),
                                         row<S64.at(0b1100)>("CLoadFF1LSSZ", ldff1, library_load<1>),
                                         row<U16.at(0b0101)>("CLoadFF2LSSZ", ldff1, library_load<2>),
                                         row<U32.at(0b0110)>("CLoadFF2LSSZ", ldff1, library_load<2>),
                                         row<U64.at(0b0111)>("CLoadFF2LSSZ", ldff1, library_load<2>),
                                         row<S32.at(0b1001)>("CLoadFF2LSSZ", ldff1, library_load<2>),
                                         row<S64.at(0b1000)>("CLoadFF2LSSZ", ldff1, library_load<2>),
                                         row<U32.at(0b1010)>("CLoadFF4LSSZ", ldff1, load<sve_ldff1w_scaled_zprr, 4>),
                                         row<U64.at(0b1011)>("CLoadFF4LSSZ", ldff1, load<sve_ldff1w_d_scaled_zprr, 4>),
                                         row<S64.at(0b0100)>("CLoadFF4LSSZ", ldff1, library_load<4>),
                                         row<U64.at(0b1111)>("CLoadFF8LSSZ", ldff1, load<sve_ldff1d_scaled_zprr, 8>));

constexpr auto non_temporal_loads = group(row<U8>("CLoadNT1LSSZ", ldnt1, load<sve_ldnt1b_scaled_zprr, 1>),
                                          row<U16>("CLoadNT2LSSZ", ldnt1, load<sve_ldnt1h_scaled_zprr, 2>),
                                          row<U32>("CLoadNT4LSSZ", ldnt1, load<sve_ldnt1w_scaled_zprr, 4>),
                                          row<U64>("CLoadNT8LSSZ", ldnt1, load<sve_ldnt1d_scaled_zprr, 8>));

constexpr auto stores = group(row<U8.at(0b00'00)>("CStore1LSSZ", st1, store<sve_st1b_scaled_zprr, 1>),
                              row<U16.at(0b00'01)>("CStore1LSSZ", st1, store<sve_st1b_h_scaled_zprr, 1>),
                              row<U32.at(0b00'10)>("CStore1LSSZ", st1, store<sve_st1b_s_scaled_zprr, 1>),
                              row<U64.at(0b00'11)>("CStore1LSSZ", st1, store<sve_st1b_d_scaled_zprr, 1>),
                              row<U16.at(0b01'01)>("CStore2LSSZ", st1, store<sve_st1h_scaled_zprr, 2>),
                              row<U32.at(0b01'10)>("CStore2LSSZ", st1, store<sve_st1h_s_scaled_zprr, 2>),
                              row<U64.at(0b01'11)>("CStore2LSSZ", st1, store<sve_st1h_d_scaled_zprr, 2>),
                              row<U32.at(0b10'10)>("CStore4LSSZ", st1, store<sve_st1w_scaled_zprr, 4>),
                              row<U64.at(0b10'11)>("CStore4LSSZ", st1, store<sve_st1w_d_scaled_zprr, 4>),
                              row<U64.at(0b11'11)>("CStore8LSSZ", st1, store<sve_st1d_scaled_zprr, 8>),
                              row<U8>("CStoreNT1LSSZ", stnt1, store<sve_stnt1b_scaled_zprr, 1>),
                              row<U16>("CStoreNT2LSSZ", stnt1, store<sve_stnt1h_scaled_zprr, 2>),
                              row<U32>("CStoreNT4LSSZ", stnt1, store<sve_stnt1w_scaled_zprr, 4>),
                              row<U64>("CStoreNT8LSSZ", stnt1, store<sve_stnt1d_scaled_zprr, 8>));

constexpr auto structures = group(row<U8>("E2Load1LSSZ", ld2, load<sve_ld2b_scaled_zprr, 1, 2>),
                                  row<U16>("E2Load2LSSZ", ld2, load<sve_ld2h_scaled_zprr, 2, 2>),
                                  row<U32>("E2Load4LSSZ", ld2, load<sve_ld2w_scaled_zprr, 4, 2>),
                                  row<U64>("E2Load8LSSZ", ld2, load<sve_ld2d_scaled_zprr, 8, 2>),
                                  row<U8>("E3Load1LSSZ", ld3, load<sve_ld3b_scaled_zprr, 1, 3>),
                                  row<U16>("E3Load2LSSZ", ld3, load<sve_ld3h_scaled_zprr, 2, 3>),
                                  row<U32>("E3Load4LSSZ", ld3, load<sve_ld3w_scaled_zprr, 4, 3>),
                                  row<U64>("E3Load8LSSZ", ld3, load<sve_ld3d_scaled_zprr, 8, 3>),
                                  row<U8>("E4Load1LSSZ", ld4, load<sve_ld4b_scaled_zprr, 1, 4>),
                                  row<U16>("E4Load2LSSZ", ld4, load<sve_ld4h_scaled_zprr, 2, 4>),
                                  row<U32>("E4Load4LSSZ", ld4, load<sve_ld4w_scaled_zprr, 4, 4>),
                                  row<U64>("E4Load8LSSZ", ld4, load<sve_ld4d_scaled_zprr, 8, 4>),
                                  row<U8>("E2Store1LSSZ", st2, store<sve_st2b_scaled_zprr, 1, 2>),
                                  row<U16>("E2Store2LSSZ", st2, store<sve_st2h_scaled_zprr, 2, 2>),
                                  row<U32>("E2Store4LSSZ", st2, store<sve_st2w_scaled_zprr, 4, 2>),
                                  row<U64>("E2Store8LSSZ", st2, store<sve_st2d_scaled_zprr, 8, 2>),
                                  row<U8>("E3Store1LSSZ", st3, store<sve_st3b_scaled_zprr, 1, 3>),
                                  row<U16>("E3Store2LSSZ", st3, store<sve_st3h_scaled_zprr, 2, 3>),
                                  row<U32>("E3Store4LSSZ", st3, store<sve_st3w_scaled_zprr, 4, 3>),
                                  row<U64>("E3Store8LSSZ", st3, store<sve_st3d_scaled_zprr, 8, 3>),
                                  row<U8>("E4Store1LSSZ", st4, store<sve_st4b_scaled_zprr, 1, 4>),
                                  row<U16>("E4Store2LSSZ", st4, store<sve_st4h_scaled_zprr, 2, 4>),
                                  row<U32>("E4Store4LSSZ", st4, store<sve_st4w_scaled_zprr, 4, 4>),
                                  row<U64>("E4Store8LSSZ", st4, store<sve_st4d_scaled_zprr, 8, 4>));

constexpr auto replicated_quadwords =
    group(row<U8>("LoadDup1QSSZ", ld1rq, library_load<1>), row<U16>("LoadDup2QSSZ", ld1rq, library_load<2>),
          row<U32>("LoadDup4QSSZ", ld1rq, library_load<4>), row<U64>("LoadDup8QSSZ", ld1rq, library_load<8>));
constexpr auto rows = group(loads, first_fault_loads, non_temporal_loads, stores, structures, replicated_quadwords);

}  // namespace quern::scalar_offset
