// Rows of reciprocal and root estimates, and their steps.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/veclib/floating_point/estimate.h"

namespace quern::rows {

constexpr auto estimate_rows =
    group(row<F32, D64>("RecpEV", "01100101 zz 001110 001100 nnnnn ddddd", vector_fp<sve_frecpe_zz>),
          row<F16>("RecpEV", "01100101 zz 001110 001100 nnnnn ddddd", library_vector<RecpEV>),
          row<F16, F32, D64>("RSqrtEV", "01100101 zz 001111 001100 nnnnn ddddd", library_vector<RSqrtEV>),
          row<F16, F32, D64>("RecpXVM", "01100101 zz 001100 101 ggg nnnnn ddddd", library_unary<RecpXVM>),
          row<F32, D64>("RecpSVV", "01100101 zz 0 mmmmm 000110 nnnnn ddddd", vectors_fp<sve_frecps_zzz>),
          row<F16>("RecpSVV", "01100101 zz 0 mmmmm 000110 nnnnn ddddd", library_vectors<RecpSVV>),
          row<F16, F32, D64>("RSqrtSVV", "01100101 zz 0 mmmmm 000111 nnnnn ddddd", library_vectors<RSqrtSVV>));

}  // namespace quern::rows
