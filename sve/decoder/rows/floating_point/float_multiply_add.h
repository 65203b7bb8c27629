// Rows of fused multiply-additions.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/veclib/floating_point/float_multiply_add.h"

namespace quern::rows {

constexpr auto float_multiply_add_rows = group(
    row<F16>("FMAVVVIX", "01100100 0i1 ii mmm 000000 nnnnn ddddd", library<FMAVVVIX, Zda, Zn, Zm_low8, Zda, index3>),
    row<F16>("FMSVVVIX", "01100100 0i1 ii mmm 000001 nnnnn ddddd", library<FMSVVVIX, Zda, Zn, Zm_low8, Zda, index3>),
    row<F32, D64>("FMAVVVM", "01100101 zz 1 mmmmm 000 ggg nnnnn ddddd", accumulate_fp<sve_fmla_zpzz>),
    row<F16>("FMAVVVM", "01100101 zz 1 mmmmm 000 ggg nnnnn ddddd", library_accumulate<FMAVVVM>),
    row<F32, D64>("FMSVVVM", "01100101 zz 1 mmmmm 001 ggg nnnnn ddddd", accumulate_fp<sve_fmls_zpzz>),
    row<F16>("FMSVVVM", "01100101 zz 1 mmmmm 001 ggg nnnnn ddddd", library_accumulate<FMSVVVM>),
    row<F32, D64>("FNMAVVVM", "01100101 zz 1 mmmmm 010 ggg nnnnn ddddd", accumulate_fp<sve_fnmla_zpzz>),
    row<F16>("FNMAVVVM", "01100101 zz 1 mmmmm 010 ggg nnnnn ddddd", library_accumulate<FNMAVVVM>),
    row<F32, D64>("FNMSVVVM", "01100101 zz 1 mmmmm 011 ggg nnnnn ddddd", accumulate_fp<sve_fnmls_zpzz>),
    row<F16>("FNMSVVVM", "01100101 zz 1 mmmmm 011 ggg nnnnn ddddd", library_accumulate<FNMSVVVM>),
    row<F32, D64>("FMADDVVVM", "01100101 zz 1 aaaaa 100 ggg mmmmm ddddd", multiply_add_fp<sve_fmad_zpzz>),
    row<F16>("FMADDVVVM", "01100101 zz 1 aaaaa 100 ggg mmmmm ddddd", library_multiply_add<FMADDVVVM>),
    row<F32, D64>("FMSUBVVVM", "01100101 zz 1 aaaaa 101 ggg mmmmm ddddd", multiply_add_fp<sve_fmsb_zpzz>),
    row<F16>("FMSUBVVVM", "01100101 zz 1 aaaaa 101 ggg mmmmm ddddd", library_multiply_add<FMSUBVVVM>),
    row<F32, D64>("FNMADDVVVM", "01100101 zz 1 aaaaa 110 ggg mmmmm ddddd", multiply_add_fp<sve_fnmad_zpzz>),
    row<F16>("FNMADDVVVM", "01100101 zz 1 aaaaa 110 ggg mmmmm ddddd", library_multiply_add<FNMADDVVVM>),
    row<F32, D64>("FNMSUBVVVM", "01100101 zz 1 aaaaa 111 ggg mmmmm ddddd", multiply_add_fp<sve_fnmsb_zpzz>),
    row<F16>("FNMSUBVVVM", "01100101 zz 1 aaaaa 111 ggg mmmmm ddddd", library_multiply_add<FNMSUBVVVM>),
    row<F32>("FMAVVVIX", "01100100 101 ii mmm 000000 nnnnn ddddd", library<FMAVVVIX, Zda, Zn, Zm_low8, Zda, index2>),
    row<D64>("FMAVVVIX", "01100100 111 i mmmm 000000 nnnnn ddddd", library<FMAVVVIX, Zda, Zn, Zm_low16, Zda, index1>),
    row<F32>("FMSVVVIX", "01100100 101 ii mmm 000001 nnnnn ddddd", library<FMSVVVIX, Zda, Zn, Zm_low8, Zda, index2>),
    row<D64>("FMSVVVIX", "01100100 111 i mmmm 000001 nnnnn ddddd", library<FMSVVVIX, Zda, Zn, Zm_low16, Zda, index1>));

}  // namespace quern::rows
