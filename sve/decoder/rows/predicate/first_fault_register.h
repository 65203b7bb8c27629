// Rows of the first-fault register.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/predicate/first_fault_register.h"
#include "sve/veclib/predicate/first_fault_register.h"

namespace quern::rows {

constexpr auto first_fault_register_rows =
    group(row<P>("ClearFFSR", "00100101 00 101100 1001000 000000000", direct<sve_setffr>),
          row<P>("WriteFFSRP", "00100101 00 101000 1001000 nnnn 00000", direct<sve_wrffr_p, Pn>),
          row<P>("ReadFFSRP", "00100101 00 011001 111100 00000 0 dddd", direct<sve_rdffr_p, Pd>),
          row<P>("ActualP", "00100101 00 011000 1111000 gggg 0 dddd", direct<sve_rdffr_pp, Pd, Pg5_z>),
          row<P>("ActualFlgP", "00100101 01 011000 1111000 gggg 0 dddd", library_ffr<ActualFlgP, Pd, Pg5_z>));

}  // namespace quern::rows
