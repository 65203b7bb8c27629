// Addition and subtraction.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// a + b and a - b (FPAdd, FPSub), rounded by RMode. Infinities that cancel give the default NaN and IOC. An exact zero
// of two opposite terms is +0, but -0 when rounding towards minus infinity. A NaN keeps its sign, also as subtrahend.
// Flags: IOC, OFC, UFC, IXC, and IDC in single and double.
template <quern::float_bits T>
T FPAdd(T a, T b, FPSCR& fpscr);
template <quern::float_bits T>
T FPSub(T a, T b, FPSCR& fpscr);
