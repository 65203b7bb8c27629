// Conversion from one format to another.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// `value` in the format `To` (FPConvert). To a wider format it is exact, and `rounding` plays no part; subnormal halves
// are flushed under FZ16, without a flag. To a narrower one it is rounded as asked: a single is flushed under FZ, a
// half never, and a half under AHP has one more exponent but neither infinities, which become the largest magnitude,
// nor NaNs, which become zeros, with IOC. A NaN keeps its sign and the top of its payload, unless DN is set. Flags:
// IOC, OFC, UFC, IXC, and IDC for a flushed single or double.
template <quern::float_bits From, quern::float_bits To>
To FPConvert(From value, FPRounding rounding, FPSCR& fpscr);
