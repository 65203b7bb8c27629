// The square root.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// The square root of a (FPSqrt), rounded by RMode. That of -0 is -0; any other negative gives the default NaN and IOC.
// Flags: IOC, IXC, and IDC in single and double.
template <quern::float_bits T>
T FPSqrt(T a, FPSCR& fpscr);
