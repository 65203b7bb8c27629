// Rows of complex addition and multiply-addition.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/floating_point/host_float.h"
#include "sve/veclib/floating_point/complex.h"

namespace quern::rows {

constexpr auto complex_rows = group(row<F16, F32, D64>("FCADDVVM", "01100100 zz 00000 r 100 ggg mmmmm ddddd",
                                                       library<FCADDVVM, Zdn, Zdn, Pg_m, Zm5, rot16>),
                                    row<F32, D64>("FCMLAVVVM", "01100100 zz 0 mmmmm 0 rr ggg nnnnn ddddd",
                                                  direct_fp<sve_fcmla_zpzzr, Zda, Pg_m, Zn, Zm, rot13>),
                                    row<F16>("FCMLAVVVM", "01100100 zz 0 mmmmm 0 rr ggg nnnnn ddddd",
                                             library<FCMLAVVVM, Zda, Zda, Pg_m, Zn, Zm, rot13>),
                                    row<F16>("FCMLAVVVIX", "01100100 101 ii mmm 0001 rr nnnnn ddddd",
                                             library<FCMLAVVVIX, Zda, Zn, Zm_low8, Zda, rot10, index2>),
                                    row<F32>("FCMLAVVVIX", "01100100 111 i mmmm 0001 rr nnnnn ddddd",
                                             library<FCMLAVVVIX, Zda, Zn, Zm_low16, Zda, rot10, index1>));

}  // namespace quern::rows
