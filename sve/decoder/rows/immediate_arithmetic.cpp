// Tables of arithmetic and logic with an immediate, unpredicated, and of DUP and DUPM.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/integer/integer_arithmetic.h"
#include "sve/handlers/integer/integer_logic.h"
#include "sve/handlers/permute/element_move.h"

namespace quern {

QUERN_DECODE_TABLE(
    31_14, 32,
    row<U8, U16, U32, U64>("AddVIX", "00100101 zz 100000 11 iiiiiiiii ddddd", direct<sve_add_zi, Zdn, imm9_shifted>),
    row<U8, U16, U32, U64>("SubVIX", "00100101 zz 100001 11 iiiiiiiii ddddd", direct<sve_sub_zi, Zdn, imm9_shifted>),
    row<U8, U16, U32, U64>("SubRVIX", "00100101 zz 100011 11 iiiiiiiii ddddd", library<Zdn, imm9_shifted_narrow>),
    row<S8, S16, S32, S64>("QAddVIX", "00100101 zz 100100 11 iiiiiiiii ddddd", library<Zdn, imm9_shifted_narrow>),
    row<U8, U16, U32, U64>("QAddVIX", "00100101 zz 100101 11 iiiiiiiii ddddd", library<Zdn, imm9_shifted_narrow>),
    row<S8, S16, S32, S64>("QSubVIX", "00100101 zz 100110 11 iiiiiiiii ddddd", library<Zdn, imm9_shifted_narrow>),
    row<U8, U16, U32, U64>("QSubVIX", "00100101 zz 100111 11 iiiiiiiii ddddd", library<Zdn, imm9_shifted_narrow>),
    row<S8, S16, S32, S64>("DupI", "00100101 zz 111000 11 iiiiiiiii ddddd", direct<sve_dup_zi, Zd, imm9_shifted_s>))

QUERN_DECODE_TABLE(31_18, 4, row<U64>("OrVIX", "00000101 00 0000 iiiiiiiiiiiii ddddd", direct<sve_orr_zi, Zdn, imm13>),
                   row<U64>("XorVIX", "00000101 01 0000 iiiiiiiiiiiii ddddd", direct<sve_eor_zi, Zdn, imm13>),
                   row<U64>("AndVIX", "00000101 10 0000 iiiiiiiiiiiii ddddd", direct<sve_and_zi, Zdn, imm13>),
                   row<S64>("DupMaskI", "00000101 11 0000 iiiiiiiiiiiii ddddd", direct<sve_dupm_zi, Zd, imm13>))

}  // namespace quern
