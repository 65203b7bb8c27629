// Tables of the maps of loads and stores, and of the forms with a fourth register that share their place.
#include "sve/decoder/maps/tables.h"
#include "sve/decoder/rows/floating_point/float_bits.h"
#include "sve/decoder/rows/floating_point/float_multiply_add.h"
#include "sve/decoder/rows/integer/multiply.h"
#include "sve/decoder/rows/memory/broadcast.h"
#include "sve/decoder/rows/memory/contiguous.h"
#include "sve/decoder/rows/memory/fault_tolerant.h"
#include "sve/decoder/rows/memory/gather_scatter.h"
#include "sve/decoder/rows/memory/prefetch.h"
#include "sve/decoder/rows/memory/structure.h"
#include "sve/decoder/rows/memory/whole_register.h"
#include "sve/decoder/rows/permute/permute.h"

namespace quern {

using namespace rows;  // NOLINT(google-build-using-namespace)

QUERN_DECODE_TABLE(31_20__15_13, 81, broadcast_rows, contiguous_rows, fault_tolerant_rows, float_bits_rows,
                   structure_rows)
QUERN_DECODE_TABLE(31_21__15_13, 285, broadcast_rows, contiguous_rows, fault_tolerant_rows, float_multiply_add_rows,
                   gather_scatter_rows, multiply_rows, permute_rows, structure_rows)
QUERN_DECODE_TABLE(31_22__15_13, 18, broadcast_rows, whole_register_rows)
QUERN_DECODE_TABLE(31_22__15_13__4_4, 6, prefetch_rows, whole_register_rows)

}  // namespace quern
