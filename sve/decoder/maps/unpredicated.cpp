// Tables of the maps of unpredicated vector operations, element moves and counts.
#include "sve/decoder/maps/tables.h"
#include "sve/decoder/rows/floating_point/complex.h"
#include "sve/decoder/rows/floating_point/estimate.h"
#include "sve/decoder/rows/floating_point/float_arithmetic.h"
#include "sve/decoder/rows/floating_point/float_multiply_add.h"
#include "sve/decoder/rows/floating_point/trigonometric.h"
#include "sve/decoder/rows/integer/address.h"
#include "sve/decoder/rows/integer/index.h"
#include "sve/decoder/rows/integer/integer_arithmetic.h"
#include "sve/decoder/rows/integer/integer_logic.h"
#include "sve/decoder/rows/integer/multiply.h"
#include "sve/decoder/rows/integer/shift.h"
#include "sve/decoder/rows/permute/element_move.h"
#include "sve/decoder/rows/permute/interleave.h"
#include "sve/decoder/rows/permute/move_prefix.h"
#include "sve/decoder/rows/permute/permute.h"
#include "sve/decoder/rows/predicate/element_count.h"

namespace quern {

using namespace rows;  // NOLINT(google-build-using-namespace)

QUERN_DECODE_TABLE(31_21__15_10, 135, address_rows, estimate_rows, float_arithmetic_rows, float_multiply_add_rows,
                   index_rows, integer_arithmetic_rows, integer_logic_rows, interleave_rows, multiply_rows,
                   permute_rows, shift_rows, trigonometric_rows)
QUERN_DECODE_TABLE(31_19__15_10, 6, shift_rows, trigonometric_rows)
QUERN_DECODE_TABLE(31_23__21_21__15_10, 6, float_arithmetic_rows, float_multiply_add_rows, shift_rows)
QUERN_DECODE_TABLE(31_21__15_12, 2, complex_rows)
QUERN_DECODE_TABLE(31_10, 38, element_move_rows, estimate_rows, move_prefix_rows, permute_rows, trigonometric_rows)
QUERN_DECODE_TABLE(31_14, 32, element_move_rows, integer_arithmetic_rows)
QUERN_DECODE_TABLE(31_18, 4, element_move_rows, integer_logic_rows)
QUERN_DECODE_TABLE(31_24__21_21__16_10, 1, element_move_rows)
QUERN_DECODE_TABLE(31_24__21_21__17_10, 1, element_move_rows)
QUERN_DECODE_TABLE(31_24__21_21__18_10, 1, element_move_rows)
QUERN_DECODE_TABLE(31_24__21_21__19_10, 1, element_move_rows)
QUERN_DECODE_TABLE(31_24__21_10, 1, element_move_rows)
QUERN_DECODE_TABLE(31_20__15_10, 65, element_count_rows, shift_rows)
QUERN_DECODE_TABLE(31_21__15_11, 2, address_rows)
QUERN_DECODE_TABLE(31_11, 1, address_rows)

}  // namespace quern
