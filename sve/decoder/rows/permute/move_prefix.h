// Rows of MOVPRFX.
#pragma once

#include "sve/decoder/rows/shapes.h"
#include "sve/handlers/permute/move_prefix.h"

namespace quern::rows {

constexpr operand whole_Zd = Zd.as(operand_kind::z_whole), whole_Zn = Zn.as(operand_kind::z_whole);

constexpr auto move_prefix_rows =
    group(row<U32>("SpecialMoveV", "00000100 00 100000 101111 nnnnn ddddd", direct<sve_movprfx_zz, whole_Zd, whole_Zn>),
          row<U8, U16, U32, U64>("MovePrefix1VZ", "00000100 zz 010000 001 ggg nnnnn ddddd",
                                 direct<sve_movprfx_zpz, Zd, Pg_z, Zn>),
          row<U8, U16, U32, U64>("MovePrefix1VM", "00000100 zz 010001 001 ggg nnnnn ddddd",
                                 direct<sve_movprfx_zpz, Zd, Pg_m, Zn>));

}  // namespace quern::rows
