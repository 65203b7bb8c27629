// Division.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// a / b (FPDiv), rounded by RMode. 0/0 and infinity/infinity give the default NaN and IOC; a number over zero gives
// infinity and DZC, an infinity over zero infinity and no flag. Flags: IOC, DZC, OFC, UFC, IXC, and IDC in single and
// double.
template <quern::float_bits T>
T FPDiv(T a, T b, FPSCR& fpscr);
