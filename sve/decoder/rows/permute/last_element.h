// Rows of LAST and CLAST.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/permute/last_element.h"
#include "sve/veclib/permute/last_element.h"

namespace quern::rows {

constexpr auto last_element_rows = group(
    row<U8, U16, U32, U64>("LastAV", "00000101 zz 100000 101 ggg nnnnn ddddd", library<LastAV, Rd, Pg, Zn>),
    row<U8, U16, U32, U64>("LastBV", "00000101 zz 100001 101 ggg nnnnn ddddd", direct<sve_lastb_rpz, Rd, Pg, Zn>),
    row<B8, H16, F32, D64>("LastAV", "00000101 zz 100010 100 ggg nnnnn ddddd", library_reduction<LastAV>),
    row<B8, H16, F32, D64>("LastBV", "00000101 zz 100011 100 ggg nnnnn ddddd", reduction<sve_lastb_vpz>),
    row<U8, U16, U32, U64>("VCondXAVV", "00000101 zz 101000 100 ggg mmmmm ddddd", library_selection<VCondXAVV>),
    row<U8, U16, U32, U64>("VCondXBVV", "00000101 zz 101001 100 ggg mmmmm ddddd", library_selection<VCondXBVV>),
    row<B8, H16, F32, D64>("CondXASV", "00000101 zz 101010 100 ggg mmmmm ddddd", library_scalar_reduction<CondXASV>),
    row<B8, H16, F32, D64>("CondXBSV", "00000101 zz 101011 100 ggg mmmmm ddddd", library_scalar_reduction<CondXBSV>),
    row<U8, U16, U32, U64>("CondXASV", "00000101 zz 110000 101 ggg mmmmm ddddd", library<CondXASV, Rdn, Pg, Rdn, Zm5>),
    row<U8, U16, U32, U64>("CondXBSV", "00000101 zz 110001 101 ggg mmmmm ddddd", direct<sve_clastb_rpz, Rdn, Pg, Zm5>));

}  // namespace quern::rows
