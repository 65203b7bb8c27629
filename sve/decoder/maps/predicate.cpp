// Tables of the maps of predicate instructions, and of counts by predicate.
#include "sve/decoder/maps/tables.h"
#include "sve/decoder/rows/permute/interleave.h"
#include "sve/decoder/rows/permute/permute.h"
#include "sve/decoder/rows/predicate/element_count.h"
#include "sve/decoder/rows/predicate/first_fault_register.h"
#include "sve/decoder/rows/predicate/predicate_break.h"
#include "sve/decoder/rows/predicate/predicate_constant.h"
#include "sve/decoder/rows/predicate/predicate_flags.h"
#include "sve/decoder/rows/predicate/predicate_logic.h"
#include "sve/decoder/rows/predicate/while_loop.h"

namespace quern {

using namespace rows;  // NOLINT(google-build-using-namespace)

QUERN_DECODE_TABLE(31_0, 1, first_fault_register_rows)
QUERN_DECODE_TABLE(31_9__4_0, 1, first_fault_register_rows)
QUERN_DECODE_TABLE(31_4, 2, first_fault_register_rows, predicate_constant_rows)
QUERN_DECODE_TABLE(31_14__9_9__4_0, 1, predicate_flags_rows)
QUERN_DECODE_TABLE(31_9__4_4, 13, first_fault_register_rows, permute_rows, predicate_break_rows)
QUERN_DECODE_TABLE(31_10__4_4, 8, predicate_constant_rows)
QUERN_DECODE_TABLE(31_9, 58, element_count_rows)
QUERN_DECODE_TABLE(31_21__15_10__4_0, 4, while_loop_rows)
QUERN_DECODE_TABLE(31_20__15_9__4_4, 24, interleave_rows)
QUERN_DECODE_TABLE(31_14__9_9__4_4, 8, predicate_break_rows)
QUERN_DECODE_TABLE(31_14__9_9, 4, element_count_rows)
QUERN_DECODE_TABLE(31_21__15_10__4_4, 32, while_loop_rows)
QUERN_DECODE_TABLE(31_20__15_14__9_9__4_4, 19, predicate_break_rows, predicate_logic_rows)

}  // namespace quern
