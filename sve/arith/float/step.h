// The steps of Newton's method that refine the estimates of a reciprocal and of a reciprocal square root.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// 2 - a * b (FPRecipStepFused) and (3 - a * b) / 2 (FPRSqrtStepFused), each rounded once by RMode. An infinity times a
// zero counts as zero: 2.0 and 1.5, without IOC. A NaN `a` comes back with its sign flipped. Flags: IOC, OFC, UFC, IXC,
// and IDC in single and double.
template <quern::float_bits T>
T FPRecipStepFused(T a, T b, FPSCR& fpscr);
template <quern::float_bits T>
T FPRSqrtStepFused(T a, T b, FPSCR& fpscr);
