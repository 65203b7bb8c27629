// Rows of floating-point reductions.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/veclib/floating_point/float_reduce.h"

namespace quern::rows {

constexpr auto float_reduce_rows = group(
    row<F16, F32, D64>("AddReduceFV", "01100101 zz 000000 001 ggg nnnnn ddddd", library_reduction<AddReduceFV>),
    row<F32, D64>("MaxNumReduceFV", "01100101 zz 000100 001 ggg nnnnn ddddd", reduction_fp<sve_fmaxnmv_vpz>),
    row<F16>("MaxNumReduceFV", "01100101 zz 000100 001 ggg nnnnn ddddd", library_reduction<MaxNumReduceFV>),
    row<F32, D64>("MinNumReduceFV", "01100101 zz 000101 001 ggg nnnnn ddddd", reduction_fp<sve_fminnmv_vpz>),
    row<F16>("MinNumReduceFV", "01100101 zz 000101 001 ggg nnnnn ddddd", library_reduction<MinNumReduceFV>),
    row<F16, F32, D64>("MaxReduceFV", "01100101 zz 000110 001 ggg nnnnn ddddd", library_reduction<MaxReduceFV>),
    row<F16, F32, D64>("MinReduceFV", "01100101 zz 000111 001 ggg nnnnn ddddd", library_reduction<MinReduceFV>),
    row<F16, F32, D64>("AddReduceAV", "01100101 zz 011000 001 ggg mmmmm ddddd", library_scalar_reduction<AddReduceAV>));

}  // namespace quern::rows
