// Rows of integer division.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/integer/divide.h"

namespace quern::rows {

constexpr auto divide_rows =
    group(row<S32, S64>("DivVVM", "00000100 zz 010100 000 ggg mmmmm ddddd", binary<sve_sdiv_zpz>),
          row<U32, U64>("DivVVM", "00000100 zz 010101 000 ggg mmmmm ddddd", binary<sve_udiv_zpz>),
          row<S32, S64>("DivRVVM", "00000100 zz 010110 000 ggg mmmmm ddddd", binary<sve_sdivr_zpz>),
          row<U32, U64>("DivRVVM", "00000100 zz 010111 000 ggg mmmmm ddddd", binary<sve_udivr_zpz>));

}  // namespace quern::rows
