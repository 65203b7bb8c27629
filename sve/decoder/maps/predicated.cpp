// Tables of the maps of predicated vector operations.
#include "sve/decoder/maps/tables.h"
#include "sve/decoder/rows/floating_point/complex.h"
#include "sve/decoder/rows/floating_point/estimate.h"
#include "sve/decoder/rows/floating_point/float_arithmetic.h"
#include "sve/decoder/rows/floating_point/float_bits.h"
#include "sve/decoder/rows/floating_point/float_convert.h"
#include "sve/decoder/rows/floating_point/float_reduce.h"
#include "sve/decoder/rows/floating_point/float_round.h"
#include "sve/decoder/rows/integer/divide.h"
#include "sve/decoder/rows/integer/integer_arithmetic.h"
#include "sve/decoder/rows/integer/integer_logic.h"
#include "sve/decoder/rows/integer/integer_unary.h"
#include "sve/decoder/rows/integer/multiply.h"
#include "sve/decoder/rows/integer/reduce.h"
#include "sve/decoder/rows/integer/shift.h"
#include "sve/decoder/rows/permute/element_move.h"
#include "sve/decoder/rows/permute/last_element.h"
#include "sve/decoder/rows/permute/move_prefix.h"
#include "sve/decoder/rows/permute/permute.h"

namespace quern {

using namespace rows;  // NOLINT(google-build-using-namespace)

QUERN_DECODE_TABLE(31_13, 403, divide_rows, element_move_rows, estimate_rows, float_arithmetic_rows, float_bits_rows,
                   float_convert_rows, float_reduce_rows, float_round_rows, integer_arithmetic_rows, integer_logic_rows,
                   integer_unary_rows, last_element_rows, move_prefix_rows, multiply_rows, permute_rows, reduce_rows,
                   shift_rows)
QUERN_DECODE_TABLE(31_13__9_8, 4, shift_rows)
QUERN_DECODE_TABLE(31_13__9_9, 4, shift_rows)
QUERN_DECODE_TABLE(31_23__21_13, 4, shift_rows)
QUERN_DECODE_TABLE(31_13__9_6, 24, float_arithmetic_rows)
QUERN_DECODE_TABLE(31_17__15_13, 3, complex_rows)
QUERN_DECODE_TABLE(31_21__15_15, 3, complex_rows)
QUERN_DECODE_TABLE(31_20__15_14, 8, element_move_rows)
QUERN_DECODE_TABLE(31_21__15_14, 4, element_move_rows)

}  // namespace quern
