// Rows of breaks, PFIRST and PNEXT.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/predicate/predicate_break.h"
#include "sve/veclib/predicate/predicate_break.h"

namespace quern::rows {

constexpr auto predicate_break_rows = group(
    row<P>("SetFirstActiveP", "00100101 01 011000 1100000 gggg 0 dddd", library<SetFirstActiveP, Pdn, Pg5, Pdn>),
    row<P8, P16, P32, P64>("GenNextP", "00100101 zz 011001 1100010 gggg 0 dddd", direct<sve_pnext_pp, Pdn, Pg5>),
    row<P>("BreakAPZ", "00100101 00 010000 01 gggg 0 nnnn 0 dddd", predicate_break<sve_brka_ppp>),
    row<P>("BreakAPM", "00100101 00 010000 01 gggg 0 nnnn 1 dddd", predicate_break<sve_brka_ppp, Pg4_m>),
    row<P>("BreakAFlgPZ", "00100101 01 010000 01 gggg 0 nnnn 0 dddd", library_predicate_break<BreakAFlgPZ>),
    row<P>("BreakBPZ", "00100101 10 010000 01 gggg 0 nnnn 0 dddd", predicate_break<sve_brkb_ppp>),
    row<P>("BreakBPM", "00100101 10 010000 01 gggg 0 nnnn 1 dddd", predicate_break<sve_brkb_ppp, Pg4_m>),
    row<P>("BreakBFlgPZ", "00100101 11 010000 01 gggg 0 nnnn 0 dddd", library_predicate_break<BreakBFlgPZ>),
    row<P>("BreakNextPZ", "00100101 00 011000 01 gggg 0 nnnn 0 dddd", direct<sve_brkn_ppp, Pdn, Pg4_z, Pn>),
    row<P>("BreakNextFlgPZ", "00100101 01 011000 01 gggg 0 nnnn 0 dddd", direct<sve_brkns_ppp, Pdn, Pg4_z, Pn>),
    row<P>("BreakPrevAPZ", "00100101 00 00 mmmm 11 gggg 0 nnnn 0 dddd", library_predicate_logic<BreakPrevAPZ>),
    row<P>("BreakPrevBPZ", "00100101 00 00 mmmm 11 gggg 0 nnnn 1 dddd", predicate_logic<sve_brkpb_pppp>),
    row<P>("BreakPrevAFlgPZ", "00100101 01 00 mmmm 11 gggg 0 nnnn 0 dddd", library_predicate_logic<BreakPrevAFlgPZ>),
    row<P>("BreakPrevBFlgPZ", "00100101 01 00 mmmm 11 gggg 0 nnnn 1 dddd", predicate_logic<sve_brkpbs_pppp>));

}  // namespace quern::rows
