// Conversion from fixed-point integers.
#pragma once

#include <cstdint>

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// value / 2^fbits (FixedToFP), rounded as asked; `value` is unsigned if `u`, else in two's complement. Zero gives +0.
// A subnormal half is never flushed, a subnormal single or double (which takes a large fbits) under FZ. Flags: OFC,
// UFC, IXC.
template <quern::float_bits T>
T fplibFixedToFP(std::uint64_t value, int fbits, bool u, FPRounding rounding, FPSCR& fpscr);
