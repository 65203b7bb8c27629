// Multiplication.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// a * b (FPMul), rounded by RMode. An infinity times a zero, a flushed subnormal too, gives the default NaN and IOC.
// Flags: IOC, OFC, UFC, IXC, and IDC in single and double.
template <quern::float_bits T>
T FPMul(T a, T b, FPSCR& fpscr);

// The same (FPMulX), but an infinity times a zero gives 2.0 with the product's sign, and no IOC.
template <quern::float_bits T>
T FPMulX(T a, T b, FPSCR& fpscr);
