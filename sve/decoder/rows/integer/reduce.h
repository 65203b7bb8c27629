// Rows of integer reductions.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/reduce.h"
#include "sve/veclib/integer/reduce.h"

namespace quern::rows {

constexpr auto reduce_rows =
    group(row<S8, S16, S32>("AddReduceV", "00000100 zz 000000 001 ggg nnnnn ddddd",
                            library<AddReduceV, Vd.of(size_d), Pg, Zn>),
          row<U8, U16, U32, U64>("AddReduceV", "00000100 zz 000001 001 ggg nnnnn ddddd",
                                 direct<sve_uaddv_vpz, Vd.of(size_d), Pg, Zn>),
          row<S8, S16, S32, S64>("MaxReduceV", "00000100 zz 001000 001 ggg nnnnn ddddd", reduction<sve_smaxv_vpz>),
          row<U8, U16, U32, U64>("MaxReduceV", "00000100 zz 001001 001 ggg nnnnn ddddd", reduction<sve_umaxv_vpz>),
          row<S8, S16, S32, S64>("MinReduceV", "00000100 zz 001010 001 ggg nnnnn ddddd", reduction<sve_sminv_vpz>),
          row<U8, U16, U32, U64>("MinReduceV", "00000100 zz 001011 001 ggg nnnnn ddddd", reduction<sve_uminv_vpz>),
          row<U8, U16, U32, U64>("OrReduceV", "00000100 zz 011000 001 ggg nnnnn ddddd", reduction<sve_orv_vpz>),
          row<U8, U16, U32, U64>("XorReduceV", "00000100 zz 011001 001 ggg nnnnn ddddd", reduction<sve_eorv_vpz>),
          row<U8, U16, U32, U64>("AndReduceV", "00000100 zz 011010 001 ggg nnnnn ddddd", reduction<sve_andv_vpz>));

}  // namespace quern::rows
