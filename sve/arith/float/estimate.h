// Estimates of reciprocals and reciprocal square roots to some eight bits, and the reciprocal of an exponent.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// An estimate of 1 / a (FPRecipEstimate). Zero gives infinity and DZC; a magnitude whose reciprocal the format can't
// hold overflows by RMode, and one whose reciprocal is subnormal gives a zero and UFC under the format's flush bit. A
// finite result raises no IXC. Flags: IOC, DZC, OFC with IXC, UFC, and IDC in single and double.
template <quern::float_bits T>
T FPRecipEstimate(T a, FPSCR& fpscr);

// An estimate of 1 / sqrt(a) (FPRSqrtEstimate). Zero, a flushed subnormal too, gives infinity of its sign and DZC; any
// other negative the default NaN and IOC. Raises no IXC. Flags: IOC, DZC, and IDC in single and double.
template <quern::float_bits T>
T FPRSqrtEstimate(T a, FPSCR& fpscr);

// A power of two near 1 / a (FPRecpX): the exponent field inverted, the fraction cleared. Zeros and subnormals give the
// largest power of two, infinities zero. Flags: IOC for a signalling NaN, IDC in single and double.
template <quern::float_bits T>
T FPRecpX(T a, FPSCR& fpscr);
