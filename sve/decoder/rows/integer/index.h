// Rows of INDEX.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/index.h"

namespace quern::rows {

constexpr auto index_rows = group(
    row<S8, S16, S32, S64>("IndexII", "00000100 zz 1 iiiii 010000 jjjjj ddddd",
                           direct<sve_index_zii, Zd, imm5_low_s, imm5b_s>),
    row<S8, S16, S32, S64>("IndexSI", "00000100 zz 1 iiiii 010001 nnnnn ddddd", direct<sve_index_zri, Zd, Rn, imm5_s>),
    row<S8, S16, S32, S64>("IndexIS", "00000100 zz 1 mmmmm 010010 jjjjj ddddd",
                           direct<sve_index_zir, Zd, imm5_low_s, Rm>),
    row<S8, S16, S32, S64>("IndexSS", "00000100 zz 1 mmmmm 010011 nnnnn ddddd", direct<sve_index_zrr, Zd, Rn, Rm>));

}  // namespace quern::rows
