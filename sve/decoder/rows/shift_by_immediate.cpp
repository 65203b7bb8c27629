// Tables of shifts by an immediate, one for each element size since the amount takes over bits of the size; FTMAD,
// whose immediate stands in the place of a byte's amount.
#include "sve/decoder/operands.h"
#include "sve/decoder/rows/tables.h"
#include "sve/handlers/integer/shift.h"

namespace quern {

QUERN_DECODE_TABLE(31_13__9_8, 4,
                   row<S8>("ShrVIM", "00000100 00 000000 100 ggg 01 iii ddddd",
                           direct<sve_asr_zpi, Zdn, Pg_m, right_b>),
                   row<U8>("ShrVIM", "00000100 00 000001 100 ggg 01 iii ddddd", library<Zdn, Pg_m, right_b>),
                   row<U8>("ShlVIM", "00000100 00 000011 100 ggg 01 iii ddddd", direct<sve_lsl_zpi, Zdn, Pg_m, left_b>),
                   row<S8>("ShrDVIM", "00000100 00 000100 100 ggg 01 iii ddddd", library<Zdn, Pg_m, right_b>))

QUERN_DECODE_TABLE(31_13__9_9, 4,
                   row<S16>("ShrVIM", "00000100 00 000000 100 ggg 1 iiii ddddd",
                            direct<sve_asr_zpi, Zdn, Pg_m, right_h>),
                   row<U16>("ShrVIM", "00000100 00 000001 100 ggg 1 iiii ddddd", library<Zdn, Pg_m, right_h>),
                   row<U16>("ShlVIM", "00000100 00 000011 100 ggg 1 iiii ddddd",
                            direct<sve_lsl_zpi, Zdn, Pg_m, left_h>),
                   row<S16>("ShrDVIM", "00000100 00 000100 100 ggg 1 iiii ddddd", library<Zdn, Pg_m, right_h>))

QUERN_DECODE_TABLE(31_23__21_13, 4,
                   row<S64>("ShrVIM", "00000100 1 i 000000 100 ggg iiiii ddddd",
                            direct<sve_asr_zpi, Zdn, Pg_m, right_d>),
                   row<U64>("ShrVIM", "00000100 1 i 000001 100 ggg iiiii ddddd", library<Zdn, Pg_m, right_d>),
                   row<U64>("ShlVIM", "00000100 1 i 000011 100 ggg iiiii ddddd",
                            direct<sve_lsl_zpi, Zdn, Pg_m, left_d>),
                   row<S64>("ShrDVIM", "00000100 1 i 000100 100 ggg iiiii ddddd", library<Zdn, Pg_m, right_d>))

QUERN_DECODE_TABLE(31_19__15_10, 6,
                   row<S8>("ShrVIX", "00000100 001 01 iii 100100 nnnnn ddddd", direct<sve_asr_zzi, Zd, Zn, right16_b>),
                   row<U8>("ShrVIX", "00000100 001 01 iii 100101 nnnnn ddddd", library<Zd, Zn, right16_b>),
                   row<U8>("ShlVIX", "00000100 001 01 iii 100111 nnnnn ddddd", direct<sve_lsl_zzi, Zd, Zn, left16_b>),
                   row<F16, F32, D64>("TRIMADDVVI", "01100101 zz 010 iii 100000 mmmmm ddddd", library<Zdn, Zm5, imm3>))

}  // namespace quern
