// Tables of loop control and counting: WHILE, CTERM, counts by predicate and by vector length, and arithmetic with the
// vector length.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/integer/address.h"
#include "sve/handlers/integer/shift.h"
#include "sve/handlers/predicate/element_count.h"
#include "sve/handlers/predicate/while_loop.h"
#include "sve/veclib/predicate/element_count.h"

namespace quern {

QUERN_DECODE_TABLE(31_21__15_10__4_0, 4,
                   row<U32.at(0), U64.at(1)>("CTermEQ", "00100101 1z 1 mmmmm 001000 nnnnn 00000", library<Rn, Rm>),
                   row<U32.at(0), U64.at(1)>("CTermNE", "00100101 1z 1 mmmmm 001000 nnnnn 10000", library<Rn, Rm>))

namespace {

template <auto Handler>
constexpr auto while_w = direct<Handler, Pd, Rn.of(size_w), Rm.of(size_w)>;
template <auto Handler>
constexpr auto while_x = direct<Handler, Pd, Rn.of(size_x), Rm.of(size_x)>;
constexpr auto library_while_w = library<Pd, Rn.of(size_w), Rm.of(size_w)>;
constexpr auto library_while_x = library<Pd, Rn.of(size_x), Rm.of(size_x)>;

}  // namespace

QUERN_DECODE_TABLE(
    31_21__15_10__4_4, 32,
    row<S8, S16, S32, S64>("While4LTSS", "00100101 zz 1 mmmmm 000001 nnnnn 0 dddd", while_w<sve_whilelt_prr>),
    row<S8, S16, S32, S64>("While4LESS", "00100101 zz 1 mmmmm 000001 nnnnn 1 dddd", library_while_w),
    row<U8, U16, U32, U64>("While4LTSS", "00100101 zz 1 mmmmm 000011 nnnnn 0 dddd", while_w<sve_whilelo_prr>),
    row<U8, U16, U32, U64>("While4LESS", "00100101 zz 1 mmmmm 000011 nnnnn 1 dddd", while_w<sve_whilels_prr>),
    row<S8, S16, S32, S64>("While8LTSS", "00100101 zz 1 mmmmm 000101 nnnnn 0 dddd", while_x<sve_whilelt_prr>),
    row<S8, S16, S32, S64>("While8LESS", "00100101 zz 1 mmmmm 000101 nnnnn 1 dddd", library_while_x),
    row<U8, U16, U32, U64>("While8LTSS", "00100101 zz 1 mmmmm 000111 nnnnn 0 dddd", while_x<sve_whilelo_prr>),
    row<U8, U16, U32, U64>("While8LESS", "00100101 zz 1 mmmmm 000111 nnnnn 1 dddd", while_x<sve_whilels_prr>))

QUERN_DECODE_TABLE(31_14__9_9, 4,
                   row<U8, U16, U32, U64>("SCountP", "00100101 zz 100000 10 gggg 0 nnnn ddddd",
                                          direct<sve_cntp_rpp, Xd, Pg4, Pn>))

QUERN_DECODE_TABLE(31_9, 58,
                   row<U16, U32, U64>("IncrCountPV", "00100101 zz 101100 1000000 mmmm ddddd", library<Zdn, Pm5>),
                   row<U16, U32, U64>("DecrCountPV", "00100101 zz 101101 1000000 mmmm ddddd", library<Zdn, Pm5>),
                   row<S16, S32, S64>("QIncrCountPV", "00100101 zz 101000 1000000 mmmm ddddd", library<Zdn, Pm5>),
                   row<U16, U32, U64>("QIncrCountPV", "00100101 zz 101001 1000000 mmmm ddddd", library<Zdn, Pm5>),
                   row<S16, S32, S64>("QDecrCountPV", "00100101 zz 101010 1000000 mmmm ddddd", library<Zdn, Pm5>),
                   row<U16, U32, U64>("QDecrCountPV", "00100101 zz 101011 1000000 mmmm ddddd", library<Zdn, Pm5>),
                   row<U8, U16, U32, U64>("IncrSCountPS", "00100101 zz 101100 1000100 mmmm ddddd",
                                          direct<sve_incp_rp, Xdn, Pm5>),
                   row<U8, U16, U32, U64>("DecrSCountPS", "00100101 zz 101101 1000100 mmmm ddddd", library<Xdn, Pm5>),
                   row<S8, S16, S32, S64>("QIncrSCount4PS", "00100101 zz 101000 1000100 mmmm ddddd", library<Wdn, Pm5>),
                   row<U8, U16, U32, U64>("QIncrSCount4PS", "00100101 zz 101001 1000100 mmmm ddddd", library<Wdn, Pm5>),
                   row<S8, S16, S32, S64>("QDecrSCount4PS", "00100101 zz 101010 1000100 mmmm ddddd", library<Wdn, Pm5>),
                   row<U8, U16, U32, U64>("QDecrSCount4PS", "00100101 zz 101011 1000100 mmmm ddddd", library<Wdn, Pm5>),
                   row<S8, S16, S32, S64>("QIncrSCount8PS", "00100101 zz 101000 1000110 mmmm ddddd", library<Xdn, Pm5>),
                   row<U8, U16, U32, U64>("QIncrSCount8PS", "00100101 zz 101001 1000110 mmmm ddddd", library<Xdn, Pm5>),
                   row<S8, S16, S32, S64>("QDecrSCount8PS", "00100101 zz 101010 1000110 mmmm ddddd", library<Xdn, Pm5>),
                   row<U8, U16, U32, U64>("QDecrSCount8PS", "00100101 zz 101011 1000110 mmmm ddddd", library<Xdn, Pm5>))

QUERN_DECODE_TABLE(31_11, 1,  //
                   row<S64>("VLX", "00000100 101 11111 01010 iiiiii ddddd", direct<sve_rdvl_ri, Xd, imm6_s>))

QUERN_DECODE_TABLE(31_21__15_11, 2,
                   row<S64>("AddVLX", "00000100 001 nnnnn 01010 iiiiii ddddd",
                            direct<sve_addvl_rri, Xd_sp, Xn16_sp, imm6_s>),
                   row<S64>("AddPLX", "00000100 011 nnnnn 01010 iiiiii ddddd",
                            direct<sve_addpl_rri, Xd_sp, Xn16_sp, imm6_s>))

namespace {

// A register moved by a pattern's count of elements times a multiplier. The library adds 1 to the multiplier's field.
template <auto Handler, operand Register>
constexpr auto by_pattern = direct<Handler, Register, pattern, mul_plus_one>;
template <operand Register>
constexpr auto library_by_pattern = library<Register, pattern, mul_field>;

template <auto Function>
constexpr auto count = library_scalar<Function, Xd, pattern, mul_field>;

constexpr auto counts =
    group(row<U8>("CountVLSI", "00000100 zz 10 iiii 111000 ppppp ddddd", count<VecU8CountVLSI>),
          row<U16>("CountVLSI", "00000100 zz 10 iiii 111000 ppppp ddddd", count<VecU16CountVLSI>),
          row<U32>("CountVLSI", "00000100 zz 10 iiii 111000 ppppp ddddd", count<VecU32CountVLSI>),
          row<U64>("CountVLSI", "00000100 zz 10 iiii 111000 ppppp ddddd", count<VecU64CountVLSI>),
          row<U8>("IncrVLSI", "00000100 zz 11 iiii 111000 ppppp ddddd", by_pattern<sve_incb_rii, Xdn>),
          row<U16>("IncrVLSI", "00000100 zz 11 iiii 111000 ppppp ddddd", by_pattern<sve_inch_rii, Xdn>),
          row<U32>("IncrVLSI", "00000100 zz 11 iiii 111000 ppppp ddddd", by_pattern<sve_incw_rii, Xdn>),
          row<U64>("IncrVLSI", "00000100 zz 11 iiii 111000 ppppp ddddd", by_pattern<sve_incd_rii, Xdn>),
          row<U8>("DecrVLSI", "00000100 zz 11 iiii 111001 ppppp ddddd", by_pattern<sve_decb_rii, Xdn>),
          row<U16>("DecrVLSI", "00000100 zz 11 iiii 111001 ppppp ddddd", by_pattern<sve_dech_rii, Xdn>),
          row<U32>("DecrVLSI", "00000100 zz 11 iiii 111001 ppppp ddddd", by_pattern<sve_decw_rii, Xdn>),
          row<U64>("DecrVLSI", "00000100 zz 11 iiii 111001 ppppp ddddd", by_pattern<sve_decd_rii, Xdn>),
          row<U16>("IncrVLVI", "00000100 zz 11 iiii 110000 ppppp ddddd", by_pattern<sve_inch_zii, Zdn>),
          row<U32>("IncrVLVI", "00000100 zz 11 iiii 110000 ppppp ddddd", by_pattern<sve_incw_zii, Zdn>),
          row<U64>("IncrVLVI", "00000100 zz 11 iiii 110000 ppppp ddddd", by_pattern<sve_incd_zii, Zdn>),
          row<U16>("DecrVLVI", "00000100 zz 11 iiii 110001 ppppp ddddd", by_pattern<sve_dech_zii, Zdn>),
          row<U32>("DecrVLVI", "00000100 zz 11 iiii 110001 ppppp ddddd", by_pattern<sve_decw_zii, Zdn>),
          row<U64>("DecrVLVI", "00000100 zz 11 iiii 110001 ppppp ddddd", by_pattern<sve_decd_zii, Zdn>));

constexpr auto saturating_counts =
    group(row<S8, S16, S32, S64>("QIncrVL4SI", "00000100 zz 10 iiii 111100 ppppp ddddd", library_by_pattern<Wdn>),
          row<U8, U16, U32, U64>("QIncrVL4SI", "00000100 zz 10 iiii 111101 ppppp ddddd", library_by_pattern<Wdn>),
          row<S8, S16, S32, S64>("QDecrVL4SI", "00000100 zz 10 iiii 111110 ppppp ddddd", library_by_pattern<Wdn>),
          row<U8>("QDecrVL4SI", "00000100 zz 10 iiii 111111 ppppp ddddd", by_pattern<sve_uqdecb_rii, Wdn>),
          row<U16, U32, U64>("QDecrVL4SI", "00000100 zz 10 iiii 111111 ppppp ddddd", library_by_pattern<Wdn>),
          row<S8, S16, S32, S64>("QIncrVL8SI", "00000100 zz 11 iiii 111100 ppppp ddddd", library_by_pattern<Xdn>),
          row<U8, U16, U32, U64>("QIncrVL8SI", "00000100 zz 11 iiii 111101 ppppp ddddd", library_by_pattern<Xdn>),
          row<S8, S16, S32, S64>("QDecrVL8SI", "00000100 zz 11 iiii 111110 ppppp ddddd", library_by_pattern<Xdn>),
          row<U8>("QDecrVL8SI", "00000100 zz 11 iiii 111111 ppppp ddddd", by_pattern<sve_uqdecb_rii, Xdn>),
          row<U16, U32, U64>("QDecrVL8SI", "00000100 zz 11 iiii 111111 ppppp ddddd", library_by_pattern<Xdn>),
          row<S16, S32, S64>("QIncrVLVI", "00000100 zz 10 iiii 110000 ppppp ddddd", library_by_pattern<Zdn>),
          row<U16, U32, U64>("QIncrVLVI", "00000100 zz 10 iiii 110001 ppppp ddddd", library_by_pattern<Zdn>),
          row<S16, S32, S64>("QDecrVLVI", "00000100 zz 10 iiii 110010 ppppp ddddd", library_by_pattern<Zdn>),
          row<U16, U32, U64>("QDecrVLVI", "00000100 zz 10 iiii 110011 ppppp ddddd", library_by_pattern<Zdn>));

// Counts have a bit of the element size where shifts of halfwords have a bit of the amount.
constexpr auto halfword_shifts =
    group(row<S16>("ShrVIX", "00000100 001 1 iiii 100100 nnnnn ddddd", direct<sve_asr_zzi, Zd, Zn, right16_h>),
          row<U16>("ShrVIX", "00000100 001 1 iiii 100101 nnnnn ddddd", library<Zd, Zn, right16_h>),
          row<U16>("ShlVIX", "00000100 001 1 iiii 100111 nnnnn ddddd", direct<sve_lsl_zzi, Zd, Zn, left16_h>));

}  // namespace

QUERN_DECODE_TABLE(31_20__15_10, 65, counts, saturating_counts, halfword_shifts)

}  // namespace quern
