// Rows of rounding to integral values.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/veclib/floating_point/float_round.h"

namespace quern::rows {

constexpr auto float_round_rows =
    group(row<F16, F32, D64>("FRIntNVM", "01100101 zz 000000 101 ggg nnnnn ddddd", library_unary<FRIntNVM>),
          row<F16, F32, D64>("FRIntPVM", "01100101 zz 000001 101 ggg nnnnn ddddd", library_unary<FRIntPVM>),
          row<F16, F32, D64>("FRIntMVM", "01100101 zz 000010 101 ggg nnnnn ddddd", library_unary<FRIntMVM>),
          row<F16, F32, D64>("FRIntZVM", "01100101 zz 000011 101 ggg nnnnn ddddd", library_unary<FRIntZVM>),
          row<F32, D64>("FRIntAVM", "01100101 zz 000100 101 ggg nnnnn ddddd", unary_fp<sve_frinta_zpz>),
          row<F16>("FRIntAVM", "01100101 zz 000100 101 ggg nnnnn ddddd", library_unary<FRIntAVM>),
          row<F16, F32, D64>("FRIntXVM", "01100101 zz 000110 101 ggg nnnnn ddddd", library_unary<FRIntXVM>),
          row<F16, F32, D64>("FRIntIVM", "01100101 zz 000111 101 ggg nnnnn ddddd", library_unary<FRIntIVM>));

}  // namespace quern::rows
