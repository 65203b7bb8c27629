// Rows of spill and fill of whole registers.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/memory/whole_register.h"

namespace quern::rows {

constexpr operand whole_Zt = Zt.as(operand_kind::z_whole);

constexpr auto whole_register_rows = group(
    row<U64>("FillSI", "1000010110 iiiiii 010 iii nnnnn ttttt",
             whole_register<memory_kind::load, sve_ldr_zri, whole_Zt>),
    row<U64>("SpillSI", "1110010110 iiiiii 010 iii nnnnn ttttt",
             whole_register<memory_kind::store, sve_str_zri, whole_Zt>),
    row<P>("FillSI", "1000010110 iiiiii 000 iii nnnnn 0 tttt", whole_register<memory_kind::load, sve_ldr_pri, Pt>),
    row<P>("SpillSI", "1110010110 iiiiii 000 iii nnnnn 0 tttt", whole_register<memory_kind::store, sve_str_pri, Pt>));

}  // namespace quern::rows
