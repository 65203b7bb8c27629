// Rows of predicate constants.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/predicate/predicate_constant.h"
#include "sve/veclib/predicate/predicate_constant.h"

namespace quern::rows {

constexpr auto predicate_constant_rows =
    group(row<P>("False", "00100101 00 011000 111001 00000 0 dddd", direct<sve_pfalse_p, Pd>),
          row<P8, P16, P32, P64>("TrueI", "00100101 zz 011000 111000 ppppp 0 dddd", direct<sve_ptrue_pi, Pd, pattern>),
          row<P8, P16, P32, P64>("TrueFlgI", "00100101 zz 011001 111000 ppppp 0 dddd", library<TrueFlgI, Pd, pattern>));

}  // namespace quern::rows
