// Rounding to an integral value in the same format.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// The integer that `op` rounds to as asked, TIEAWAY too, as a number of the format (FPRoundInt). A zero result has the
// sign of op. Flags: IXC if `exact` and op was not an integer, IOC for a signalling NaN, IDC in single and double.
template <quern::float_bits T>
T FPRoundInt(T op, FPRounding rounding, bool exact, FPSCR& fpscr);
