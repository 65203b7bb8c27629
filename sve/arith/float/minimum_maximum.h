// The greater and the smaller of two numbers.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// The greater and the smaller of a and b (FPMax, FPMin). +0 is above -0. Subnormals are ordered as they came, and the
// chosen one is then flushed as the controls say. A NaN wins as in arithmetic. Flags: IOC for a signalling NaN, and IDC
// in single and double.
template <quern::float_bits T>
T FPMax(T a, T b, FPSCR& fpscr);
template <quern::float_bits T>
T FPMin(T a, T b, FPSCR& fpscr);

// The same, except that a number wins over a quiet NaN (FPMaxNum, FPMinNum; IEEE 754-2008's maxNum and minNum). A
// signalling NaN still wins and raises IOC.
template <quern::float_bits T>
T FPMaxNum(T a, T b, FPSCR& fpscr);
template <quern::float_bits T>
T FPMinNum(T a, T b, FPSCR& fpscr);
