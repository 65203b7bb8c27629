// Tables of the predicate instructions: the first-fault register, constants, tests, permutes, breaks and logic.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/permute/element_move.h"
#include "sve/handlers/permute/interleave.h"
#include "sve/handlers/permute/permute.h"
#include "sve/handlers/predicate/first_fault_register.h"
#include "sve/handlers/predicate/predicate_break.h"
#include "sve/handlers/predicate/predicate_constant.h"
#include "sve/handlers/predicate/predicate_flags.h"
#include "sve/handlers/predicate/predicate_logic.h"

namespace quern {

QUERN_DECODE_TABLE(31_0, 1,  //
                   row<P>("ClearFFSR", "00100101 00 101100 1001000 000000000", direct<sve_setffr>))

QUERN_DECODE_TABLE(31_9__4_0, 1,  //
                   row<P>("WriteFFSRP", "00100101 00 101000 1001000 nnnn 00000", direct<sve_wrffr_p, Pn>))

QUERN_DECODE_TABLE(31_4, 2,  //
                   row<P>("False", "00100101 00 011000 111001 00000 0 dddd", direct<sve_pfalse_p, Pd>),
                   row<P>("ReadFFSRP", "00100101 00 011001 111100 00000 0 dddd", direct<sve_rdffr_p, Pd>))

QUERN_DECODE_TABLE(31_14__9_9__4_0, 1,  //
                   row<P>("TestPZ", "00100101 01 010000 11 gggg 0 nnnn 00000", direct<sve_ptest_pp, Pg4, Pn>))

QUERN_DECODE_TABLE(
    31_9__4_4, 13, row<P>("ActualP", "00100101 00 011000 1111000 gggg 0 dddd", direct<sve_rdffr_pp, Pd, Pg5_z>),
    row<P>("ActualFlgP", "00100101 01 011000 1111000 gggg 0 dddd", library<Pd, Pg5_z>),
    row<P>("SetFirstActiveP", "00100101 01 011000 1100000 gggg 0 dddd", library<Pdn, Pg5>),
    row<P8, P16, P32, P64>("GenNextP", "00100101 zz 011001 1100010 gggg 0 dddd", direct<sve_pnext_pp, Pdn, Pg5>),
    row<P>("UnpackLoP", "00000101 00 110000 0100000 nnnn 0 dddd", direct<sve_punpklo_pp, Pd.of(size_h), Pn>),
    row<P>("UnpackHiP", "00000101 00 110001 0100000 nnnn 0 dddd", direct<sve_punpkhi_pp, Pd.of(size_h), Pn>),
    row<P8, P16, P32, P64>("ReverseP", "00000101 zz 110100 0100000 nnnn 0 dddd", direct<sve_rev_pp, Pd, Pn>))

QUERN_DECODE_TABLE(31_10__4_4, 8,
                   row<P8, P16, P32, P64>("TrueI", "00100101 zz 011000 111000 ppppp 0 dddd",
                                          direct<sve_ptrue_pi, Pd, pattern>),
                   row<P8, P16, P32, P64>("TrueFlgI", "00100101 zz 011001 111000 ppppp 0 dddd", library<Pd, pattern>))

QUERN_DECODE_TABLE(
    31_20__15_9__4_4, 24,
    row<P8, P16, P32, P64>("Zip1PP", "00000101 zz 10 mmmm 0100000 nnnn 0 dddd", direct<sve_zip1_ppp, Pd, Pn, Pm>),
    row<P8, P16, P32, P64>("Zip2PP", "00000101 zz 10 mmmm 0100010 nnnn 0 dddd", direct<sve_zip2_ppp, Pd, Pn, Pm>),
    row<P8, P16, P32, P64>("Uzp1PP", "00000101 zz 10 mmmm 0100100 nnnn 0 dddd", direct<sve_uzp1_ppp, Pd, Pn, Pm>),
    row<P8, P16, P32, P64>("Uzp2PP", "00000101 zz 10 mmmm 0100110 nnnn 0 dddd", library<Pd, Pn, Pm>),
    row<P8, P16, P32, P64>("Trn1PP", "00000101 zz 10 mmmm 0101000 nnnn 0 dddd", library<Pd, Pn, Pm>),
    row<P8, P16, P32, P64>("Trn2PP", "00000101 zz 10 mmmm 0101010 nnnn 0 dddd", library<Pd, Pn, Pm>))

QUERN_DECODE_TABLE(31_14__9_9__4_4, 8,
                   row<P>("BreakAPZ", "00100101 00 010000 01 gggg 0 nnnn 0 dddd", direct<sve_brka_ppp, Pd, Pg4_z, Pn>),
                   row<P>("BreakAPM", "00100101 00 010000 01 gggg 0 nnnn 1 dddd", direct<sve_brka_ppp, Pd, Pg4_m, Pn>),
                   row<P>("BreakAFlgPZ", "00100101 01 010000 01 gggg 0 nnnn 0 dddd", library<Pd, Pg4_z, Pn>),
                   row<P>("BreakBPZ", "00100101 10 010000 01 gggg 0 nnnn 0 dddd", direct<sve_brkb_ppp, Pd, Pg4_z, Pn>),
                   row<P>("BreakBPM", "00100101 10 010000 01 gggg 0 nnnn 1 dddd", direct<sve_brkb_ppp, Pd, Pg4_m, Pn>),
                   row<P>("BreakBFlgPZ", "00100101 11 010000 01 gggg 0 nnnn 0 dddd", library<Pd, Pg4_z, Pn>),
                   row<P>("BreakNextPZ", "00100101 00 011000 01 gggg 0 nnnn 0 dddd",
                          direct<sve_brkn_ppp, Pdn, Pg4_z, Pn>),
                   row<P>("BreakNextFlgPZ", "00100101 01 011000 01 gggg 0 nnnn 0 dddd",
                          direct<sve_brkns_ppp, Pdn, Pg4_z, Pn>))

QUERN_DECODE_TABLE(
    31_20__15_14__9_9__4_4, 19,
    row<P>("AndPPZ", "00100101 00 00 mmmm 01 gggg 0 nnnn 0 dddd", direct<sve_and_pppp, Pd, Pg4_z, Pn, Pm>),
    row<P>("BicPPZ", "00100101 00 00 mmmm 01 gggg 0 nnnn 1 dddd", direct<sve_bic_pppp, Pd, Pg4_z, Pn, Pm>),
    row<P>("XorPPZ", "00100101 00 00 mmmm 01 gggg 1 nnnn 0 dddd", direct<sve_eor_pppp, Pd, Pg4_z, Pn, Pm>),
    row<P>("SelPP", "00100101 00 00 mmmm 01 gggg 1 nnnn 1 dddd", direct<sve_sel_pppp, Pd, Pg4, Pn, Pm>),
    row<P>("AndFlgPPZ", "00100101 01 00 mmmm 01 gggg 0 nnnn 0 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("BicFlgPPZ", "00100101 01 00 mmmm 01 gggg 0 nnnn 1 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("XorFlgPPZ", "00100101 01 00 mmmm 01 gggg 1 nnnn 0 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("OrPPZ", "00100101 10 00 mmmm 01 gggg 0 nnnn 0 dddd", direct<sve_orr_pppp, Pd, Pg4_z, Pn, Pm>),
    row<P>("OrNPPZ", "00100101 10 00 mmmm 01 gggg 0 nnnn 1 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("NorPPZ", "00100101 10 00 mmmm 01 gggg 1 nnnn 0 dddd", direct<sve_nor_pppp, Pd, Pg4_z, Pn, Pm>),
    row<P>("NandPPZ", "00100101 10 00 mmmm 01 gggg 1 nnnn 1 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("OrFlgPPZ", "00100101 11 00 mmmm 01 gggg 0 nnnn 0 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("OrNFlgPPZ", "00100101 11 00 mmmm 01 gggg 0 nnnn 1 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("NorFlgPPZ", "00100101 11 00 mmmm 01 gggg 1 nnnn 0 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("NandFlgPPZ", "00100101 11 00 mmmm 01 gggg 1 nnnn 1 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("BreakPrevAPZ", "00100101 00 00 mmmm 11 gggg 0 nnnn 0 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("BreakPrevBPZ", "00100101 00 00 mmmm 11 gggg 0 nnnn 1 dddd", direct<sve_brkpb_pppp, Pd, Pg4_z, Pn, Pm>),
    row<P>("BreakPrevAFlgPZ", "00100101 01 00 mmmm 11 gggg 0 nnnn 0 dddd", library<Pd, Pg4_z, Pn, Pm>),
    row<P>("BreakPrevBFlgPZ", "00100101 01 00 mmmm 11 gggg 0 nnnn 1 dddd", direct<sve_brkpbs_pppp, Pd, Pg4_z, Pn, Pm>))

}  // namespace quern
