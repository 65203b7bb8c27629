// The exponential accelerator.
#pragma once

#include "sve/arith/float/format.h"

// A power of two (FPExpA, FEXPA): 2^(i/n) for the i in the low bits of `a`, with the exponent field in the bits above
// it; n is 32 in half, 64 in single and double. Higher bits of a are ignored, and the sign is positive.
template <quern::float_bits T>
T FPEXPA(T a);
