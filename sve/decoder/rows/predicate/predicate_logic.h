// Rows of logic of predicates.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/predicate/predicate_logic.h"
#include "sve/veclib/predicate/predicate_logic.h"

namespace quern::rows {

constexpr auto predicate_logic_rows =
    group(row<P>("AndPPZ", "00100101 00 00 mmmm 01 gggg 0 nnnn 0 dddd", predicate_logic<sve_and_pppp>),
          row<P>("BicPPZ", "00100101 00 00 mmmm 01 gggg 0 nnnn 1 dddd", predicate_logic<sve_bic_pppp>),
          row<P>("XorPPZ", "00100101 00 00 mmmm 01 gggg 1 nnnn 0 dddd", predicate_logic<sve_eor_pppp>),
          row<P>("SelPP", "00100101 00 00 mmmm 01 gggg 1 nnnn 1 dddd", direct<sve_sel_pppp, Pd, Pg4, Pn, Pm>),
          row<P>("AndFlgPPZ", "00100101 01 00 mmmm 01 gggg 0 nnnn 0 dddd", library_predicate_logic<AndFlgPPZ>),
          row<P>("BicFlgPPZ", "00100101 01 00 mmmm 01 gggg 0 nnnn 1 dddd", library_predicate_logic<BicFlgPPZ>),
          row<P>("XorFlgPPZ", "00100101 01 00 mmmm 01 gggg 1 nnnn 0 dddd", library_predicate_logic<XorFlgPPZ>),
          row<P>("OrPPZ", "00100101 10 00 mmmm 01 gggg 0 nnnn 0 dddd", predicate_logic<sve_orr_pppp>),
          row<P>("OrNPPZ", "00100101 10 00 mmmm 01 gggg 0 nnnn 1 dddd", library_predicate_logic<OrNPPZ>),
          row<P>("NorPPZ", "00100101 10 00 mmmm 01 gggg 1 nnnn 0 dddd", predicate_logic<sve_nor_pppp>),
          row<P>("NandPPZ", "00100101 10 00 mmmm 01 gggg 1 nnnn 1 dddd", library_predicate_logic<NandPPZ>),
          row<P>("OrFlgPPZ", "00100101 11 00 mmmm 01 gggg 0 nnnn 0 dddd", library_predicate_logic<OrFlgPPZ>),
          row<P>("OrNFlgPPZ", "00100101 11 00 mmmm 01 gggg 0 nnnn 1 dddd", library_predicate_logic<OrNFlgPPZ>),
          row<P>("NorFlgPPZ", "00100101 11 00 mmmm 01 gggg 1 nnnn 0 dddd", library_predicate_logic<NorFlgPPZ>),
          row<P>("NandFlgPPZ", "00100101 11 00 mmmm 01 gggg 1 nnnn 1 dddd", library_predicate_logic<NandFlgPPZ>));

}  // namespace quern::rows
