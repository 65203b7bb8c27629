// Comparison.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// Whether a equals b (FPCompareEQ), and whether one of them is a NaN (FPCompareUN). +0 equals -0, and so do flushed
// subnormals. A NaN equals nothing. Flags: IOC for a signalling NaN, and IDC in single and double.
template <quern::float_bits T>
bool FPCompareEQ(T a, T b, FPSCR& fpscr);
template <quern::float_bits T>
bool FPCompareUN(T a, T b, FPSCR& fpscr);

// Whether a is at least b, or above b (FPCompareGE, FPCompareGT); false with a NaN. Flags: IOC for any NaN, and IDC in
// single and double.
template <quern::float_bits T>
bool FPCompareGE(T a, T b, FPSCR& fpscr);
template <quern::float_bits T>
bool FPCompareGT(T a, T b, FPSCR& fpscr);

// N, Z, C and V as a nibble (FPCompare), in single and double: 6 equal, 2 greater, 8 less, 3 unordered. Flags: IOC for
// a signalling NaN, or for any if `signal`; IDC.
template <quern::float_bits T>
int FPCompare(T a, T b, bool signal, FPSCR& fpscr);
