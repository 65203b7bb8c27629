// Rows of PTEST.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/predicate/predicate_flags.h"

namespace quern::rows {

constexpr auto predicate_flags_rows =
    group(row<P>("TestPZ", "00100101 01 010000 11 gggg 0 nnnn 00000", direct<sve_ptest_pp, Pg4, Pn>));

}  // namespace quern::rows
