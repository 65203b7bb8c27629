// Tables of contiguous memory instructions with an immediate offset: loads and stores of vectors and structures,
// broadcasts, whole registers, and FCPY and prefetches, which share their place.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/memory/broadcast.h"
#include "sve/handlers/memory/contiguous.h"
#include "sve/handlers/memory/fault_tolerant.h"
#include "sve/handlers/memory/structure.h"
#include "sve/handlers/memory/whole_register.h"

namespace quern {
namespace {

// Field z of the single loads is the memory element and the lane as the architecture's dtype codes them; of the single
// stores, the memory element's size above the lane's; of the others, the element's size.
constexpr encoding ld1 = "1010010 zzzz 0 iiii 101 ggg nnnnn ttttt", ldnf1 = "1010010 zzzz 1 iiii 101 ggg nnnnn ttttt";
constexpr encoding st1 = "1110010 zzzz 0 iiii 111 ggg nnnnn ttttt";
constexpr encoding ldnt1 = "1010010 zz 000 iiii 111 ggg nnnnn ttttt", stnt1 = "1110010 zz 001 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld2 = "1010010 zz 010 iiii 111 ggg nnnnn ttttt", st2 = "1110010 zz 011 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld3 = "1010010 zz 100 iiii 111 ggg nnnnn ttttt", st3 = "1110010 zz 101 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld4 = "1010010 zz 110 iiii 111 ggg nnnnn ttttt", st4 = "1110010 zz 111 iiii 111 ggg nnnnn ttttt";
constexpr encoding ld1rq = "1010010 zz 000 iiii 001 ggg nnnnn ttttt";
constexpr encoding ld1r = "1000010 zz 1 iiiiii 1 zz ggg nnnnn ttttt";

template <auto Handler, unsigned Registers = 1>
constexpr auto load = direct<Handler, Zt.times(Registers), Pg_z, Xn_sp, imm4_vl.times(Registers)>;
template <auto Handler, unsigned Registers = 1>
constexpr auto store = direct<Handler, Zt.times(Registers), Pg, Xn_sp, imm4_vl.times(Registers)>;
template <auto Handler, unsigned Bytes>
constexpr auto broadcast = direct<Handler, Zt, Pg_z, Xn_sp, imm6.times(Bytes)>;

constexpr auto loads = group(row<U8.at(0b0000)>("CLoad1SIZ", ld1, load<sve_ld1b_zpri>),
                             row<U16.at(0b0001)>("CLoad1SIZ", ld1, load<sve_ld1b_h_zpri>),
                             row<U32.at(0b0010)>("CLoad1SIZ", ld1, load<sve_ld1b_s_zpri>),
                             row<U64.at(0b0011)>("CLoad1SIZ", ld1, load<sve_ld1b_d_zpri>),
                             row<S16.at(0b1110)>("CLoad1SIZ", ld1, load<sve_ld1sb_h_zpri>),
                             row<S32.at(0b1101)>("CLoad1SIZ", ld1, load<sve_ld1sb_s_zpri>),
                             row<S64.at(0b1100)>("CLoad1SIZ", ld1, load<sve_ld1sb_d_zpri>),
                             row<U16.at(0b0101)>("CLoad2SIZ", ld1, load<sve_ld1h_zpri>),
                             row<U32.at(0b0110)>("CLoad2SIZ", ld1, load<sve_ld1h_s_zpri>),
                             row<U64.at(0b0111)>("CLoad2SIZ", ld1, load<sve_ld1h_d_zpri>),
                             row<S32.at(0b1001)>("CLoad2SIZ", ld1, load<sve_ld1sh_s_zpri>),
                             row<S64.at(0b1000)>("CLoad2SIZ", ld1, load<sve_ld1sh_d_zpri>),
                             row<U32.at(0b1010)>("CLoad4SIZ", ld1, load<sve_ld1w_zpri>),
                             row<U64.at(0b1011)>("CLoad4SIZ", ld1, load<sve_ld1w_d_zpri>),
                             row<S64.at(0b0100)>("CLoad4SIZ", ld1, load<sve_ld1sw_d_zpri>),
                             row<U64.at(0b1111)>("CLoad8SIZ", ld1, load<sve_ld1d_zpri>));

constexpr auto non_fault_loads = group(row<U8.at(0b0000)>("CLoadNF1SIZ", ldnf1, load<sve_ldnf1b_zpri>),
                                       row<U16.at(0b0001)>("CLoadNF1SIZ", ldnf1, load<sve_ldnf1b_h_zpri>),
                                       row<U32.at(0b0010)>("CLoadNF1SIZ", ldnf1, load<sve_ldnf1b_s_zpri>),
                                       row<U64.at(0b0011)>("CLoadNF1SIZ", ldnf1, load<sve_ldnf1b_d_zpri>),
                                       row<S16.at(0b1110)>("CLoadNF1SIZ", ldnf1, load<sve_ldnf1sb_h_zpri>),
                                       row<S32.at(0b1101)>("CLoadNF1SIZ", ldnf1, load<sve_ldnf1sb_s_zpri>),
                                       row<S64.at(0b1100)>("CLoadNF1SIZ", ldnf1, load<sve_ldnf1sb_d_zpri>),
                                       row<U16.at(0b0101)>("CLoadNF2SIZ", ldnf1, load<sve_ldnf1h_zpri>),
                                       row<U32.at(0b0110)>("CLoadNF2SIZ", ldnf1, load<sve_ldnf1h_s_zpri>),
                                       row<U64.at(0b0111)>("CLoadNF2SIZ", ldnf1, load<sve_ldnf1h_d_zpri>),
                                       row<S32.at(0b1001)>("CLoadNF2SIZ", ldnf1, load<sve_ldnf1sh_s_zpri>),
                                       row<S64.at(0b1000)>("CLoadNF2SIZ", ldnf1, load<sve_ldnf1sh_d_zpri>),
                                       row<U32.at(0b1010)>("CLoadNF4SIZ", ldnf1, load<sve_ldnf1w_zpri>),
                                       row<U64.at(0b1011)>("CLoadNF4SIZ", ldnf1, load<sve_ldnf1w_d_zpri>),
                                       row<S64.at(0b0100)>("CLoadNF4SIZ", ldnf1, load<sve_ldnf1sw_d_zpri>),
                                       row<U64.at(0b1111)>("CLoadNF8SIZ", ldnf1, load<sve_ldnf1d_zpri>));

constexpr auto non_temporal_loads =
    group(row<U8>("CLoadNT1SIZ", ldnt1, load<sve_ldnt1b_zpri>), row<U16>("CLoadNT2SIZ", ldnt1, load<sve_ldnt1h_zpri>),
          row<U32>("CLoadNT4SIZ", ldnt1, load<sve_ldnt1w_zpri>), row<U64>("CLoadNT8SIZ", ldnt1, load<sve_ldnt1d_zpri>));

constexpr auto stores = group(
    row<U8.at(0b00'00)>("CStore1SIZ", st1, store<sve_st1b_zpri>),
    row<U16.at(0b00'01)>("CStore1SIZ", st1, store<sve_st1b_h_zpri>),
    row<U32.at(0b00'10)>("CStore1SIZ", st1, store<sve_st1b_s_zpri>),
    row<U64.at(0b00'11)>("CStore1SIZ", st1, store<sve_st1b_d_zpri>),
    row<U16.at(0b01'01)>("CStore2SIZ", st1, store<sve_st1h_zpri>),
    row<U32.at(0b01'10)>("CStore2SIZ", st1, store<sve_st1h_s_zpri>),
    row<U64.at(0b01'11)>("CStore2SIZ", st1, store<sve_st1h_d_zpri>),
    row<U32.at(0b10'10)>("CStore4SIZ", st1, store<sve_st1w_zpri>),
    row<U64.at(0b10'11)>("CStore4SIZ", st1, store<sve_st1w_d_zpri>),
    row<U64.at(0b11'11)>("CStore8SIZ", st1, store<sve_st1d_zpri>),
    row<U8>("CStoreNT1SIZ", stnt1, store<sve_stnt1b_zpri>), row<U16>("CStoreNT2SIZ", stnt1, store<sve_stnt1h_zpri>),
    row<U32>("CStoreNT4SIZ", stnt1, store<sve_stnt1w_zpri>), row<U64>("CStoreNT8SIZ", stnt1, store<sve_stnt1d_zpri>));

constexpr auto structures =
    group(row<U8>("E2Load1SIZ", ld2, load<sve_ld2b_zpri, 2>), row<U16>("E2Load2SIZ", ld2, load<sve_ld2h_zpri, 2>),
          row<U32>("E2Load4SIZ", ld2, load<sve_ld2w_zpri, 2>), row<U64>("E2Load8SIZ", ld2, load<sve_ld2d_zpri, 2>),
          row<U8>("E3Load1SIZ", ld3, load<sve_ld3b_zpri, 3>), row<U16>("E3Load2SIZ", ld3, load<sve_ld3h_zpri, 3>),
          row<U32>("E3Load4SIZ", ld3, load<sve_ld3w_zpri, 3>), row<U64>("E3Load8SIZ", ld3, load<sve_ld3d_zpri, 3>),
          row<U8>("E4Load1SIZ", ld4, load<sve_ld4b_zpri, 4>), row<U16>("E4Load2SIZ", ld4, load<sve_ld4h_zpri, 4>),
          row<U32>("E4Load4SIZ", ld4, load<sve_ld4w_zpri, 4>), row<U64>("E4Load8SIZ", ld4, load<sve_ld4d_zpri, 4>),
          row<U8>("E2Store1SIZ", st2, store<sve_st2b_zpri, 2>), row<U16>("E2Store2SIZ", st2, store<sve_st2h_zpri, 2>),
          row<U32>("E2Store4SIZ", st2, store<sve_st2w_zpri, 2>), row<U64>("E2Store8SIZ", st2, store<sve_st2d_zpri, 2>),
          row<U8>("E3Store1SIZ", st3, store<sve_st3b_zpri, 3>), row<U16>("E3Store2SIZ", st3, store<sve_st3h_zpri, 3>),
          row<U32>("E3Store4SIZ", st3, store<sve_st3w_zpri, 3>), row<U64>("E3Store8SIZ", st3, store<sve_st3d_zpri, 3>),
          row<U8>("E4Store1SIZ", st4, store<sve_st4b_zpri, 4>), row<U16>("E4Store2SIZ", st4, store<sve_st4h_zpri, 4>),
          row<U32>("E4Store4SIZ", st4, store<sve_st4w_zpri, 4>), row<U64>("E4Store8SIZ", st4, store<sve_st4d_zpri, 4>));

constexpr auto replicated_quadwords =
    group(row<U8>("LoadDup1QSIZ", ld1rq, library<Zt, Pg_z, Xn_sp, imm4_s.times(16)>),
          row<U16>("LoadDup2QSIZ", ld1rq, library<Zt, Pg_z, Xn_sp, imm4_s.times(16)>),
          row<U32>("LoadDup4QSIZ", ld1rq, library<Zt, Pg_z, Xn_sp, imm4_s.times(16)>),
          row<U64>("LoadDup8QSIZ", ld1rq, library<Zt, Pg_z, Xn_sp, imm4_s.times(16)>));

constexpr auto broadcasts = group(row<U8.at(0b0000)>("LoadDup1SIZ", ld1r, broadcast<sve_ld1rb_zpri, 1>),
                                  row<U16.at(0b0001)>("LoadDup1SIZ", ld1r, broadcast<sve_ld1rb_h_zpri, 1>),
                                  row<U32.at(0b0010)>("LoadDup1SIZ", ld1r, broadcast<sve_ld1rb_s_zpri, 1>),
                                  row<U64.at(0b0011)>("LoadDup1SIZ", ld1r, broadcast<sve_ld1rb_d_zpri, 1>),
                                  row<S16.at(0b1110)>("LoadDup1SIZ", ld1r, broadcast<sve_ld1rsb_h_zpri, 1>),
                                  row<S32.at(0b1101)>("LoadDup1SIZ", ld1r, broadcast<sve_ld1rsb_s_zpri, 1>),
                                  row<S64.at(0b1100)>("LoadDup1SIZ", ld1r, broadcast<sve_ld1rsb_d_zpri, 1>),
                                  row<U16.at(0b0101)>("LoadDup2SIZ", ld1r, broadcast<sve_ld1rh_zpri, 2>),
                                  row<U32.at(0b0110)>("LoadDup2SIZ", ld1r, broadcast<sve_ld1rh_s_zpri, 2>),
                                  row<U64.at(0b0111)>("LoadDup2SIZ", ld1r, broadcast<sve_ld1rh_d_zpri, 2>),
                                  row<S32.at(0b1001)>("LoadDup2SIZ", ld1r, broadcast<sve_ld1rsh_s_zpri, 2>),
                                  row<S64.at(0b1000)>("LoadDup2SIZ", ld1r, broadcast<sve_ld1rsh_d_zpri, 2>),
                                  row<U32.at(0b1010)>("LoadDup4SIZ", ld1r, broadcast<sve_ld1rw_zpri, 4>),
                                  row<U64.at(0b1011)>("LoadDup4SIZ", ld1r, broadcast<sve_ld1rw_d_zpri, 4>),
                                  row<S64.at(0b0100)>("LoadDup4SIZ", ld1r, broadcast<sve_ld1rsw_d_zpri, 4>),
                                  row<U64.at(0b1111)>("LoadDup8SIZ", ld1r, broadcast<sve_ld1rd_zpri, 8>));
constexpr auto float_constants =
    row<F16, F32, D64>("DupIM", "00000101 zz 01 gggg 110 iiiiiiii ddddd", library<Zd, Pg16_m, imm8_fp>);

constexpr operand whole_Zt = Zt.as(operand_kind::z_whole);

}  // namespace

QUERN_DECODE_TABLE(31_20__15_13, 81, loads, non_fault_loads, non_temporal_loads, stores, structures,
                   replicated_quadwords, float_constants)

QUERN_DECODE_TABLE(31_22__15_13, 18, broadcasts,
                   row<U64>("FillSI", "1000010110 iiiiii 010 iii nnnnn ttttt",
                            direct<sve_ldr_zri, whole_Zt, Xn_sp, imm9_vl>),
                   row<U64>("SpillSI", "1110010110 iiiiii 010 iii nnnnn ttttt",
                            direct<sve_str_zri, whole_Zt, Xn_sp, imm9_vl>))

QUERN_DECODE_TABLE(
    31_22__15_13__4_4, 6,
    row<P>("FillSI", "1000010110 iiiiii 000 iii nnnnn 0 tttt", direct<sve_ldr_pri, Pt, Xn_sp, imm9_vl>),
    row<P>("SpillSI", "1110010110 iiiiii 000 iii nnnnn 0 tttt", direct<sve_str_pri, Pt, Xn_sp, imm9_vl>),
    row<U8>("Prefetch1SI", "1000010111 iiiiii 0zz ggg nnnnn 0 oooo", no_operation<prfop, Pg, Xn_sp, imm6_vl>),
    row<U16>("Prefetch2SI", "1000010111 iiiiii 0zz ggg nnnnn 0 oooo", no_operation<prfop, Pg, Xn_sp, imm6_vl>),
    row<U32>("Prefetch4SI", "1000010111 iiiiii 0zz ggg nnnnn 0 oooo", no_operation<prfop, Pg, Xn_sp, imm6_vl>),
    row<U64>("Prefetch8SI", "1000010111 iiiiii 0zz ggg nnnnn 0 oooo", no_operation<prfop, Pg, Xn_sp, imm6_vl>))

}  // namespace quern
