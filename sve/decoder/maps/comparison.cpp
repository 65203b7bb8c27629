// Tables of the maps of vector comparisons, and prefetches.
#include "sve/decoder/maps/tables.h"
#include "sve/decoder/rows/floating_point/float_compare.h"
#include "sve/decoder/rows/integer/integer_compare.h"
#include "sve/decoder/rows/memory/prefetch.h"

namespace quern {

using namespace rows;  // NOLINT(google-build-using-namespace)

QUERN_DECODE_TABLE(31_21__15_13__4_4, 131, float_compare_rows, integer_compare_rows, prefetch_rows)
QUERN_DECODE_TABLE(31_21__13_13__4_4, 16, integer_compare_rows)
QUERN_DECODE_TABLE(31_13__4_4, 18, float_compare_rows)

}  // namespace quern
