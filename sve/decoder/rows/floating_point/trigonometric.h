// Rows of the trigonometric and exponential helpers.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/veclib/floating_point/trigonometric.h"

namespace quern::rows {

constexpr auto trigonometric_rows =
    group(row<F16, F32, D64>("EXPAV", "00000100 zz 100000 101110 nnnnn ddddd", library_vector<EXPAV>),
          row<F16, F32, D64>("TRIMADDVVI", "01100101 zz 010 iii 100000 mmmmm ddddd",
                             library<TRIMADDVVI, Zdn, Zdn, Zm5, imm3>),
          row<F16, F32, D64>("TRISMULVV", "01100101 zz 0 mmmmm 000011 nnnnn ddddd", library_vectors<TRISMULVV>),
          row<F16, F32, D64>("TRISSELVV", "00000100 zz 1 mmmmm 101100 nnnnn ddddd", library_vectors<TRISSELVV>));

}  // namespace quern::rows
