// Conversion to fixed-point integers.
#pragma once

#include <concepts>
#include <cstdint>

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// `value` * 2^fbits as an integer of the width of `To`, unsigned if `u`, else in two's complement (FPToFixed). Rounded
// as asked, TIEAWAY too; fbits is 0 to 64. A NaN gives 0 and IOC; what is out of range, infinities too, the nearest
// integer in range and IOC. Flags: IOC alone, or IXC, and IDC in single and double.
template <quern::float_bits From, std::unsigned_integral To>
To fplibFPToFixed(From value, int fbits, bool u, FPRounding rounding, FPSCR& fpscr);

// The core of it: mnt * 2^(exp - 1075), negated if sgn is 1, as a 64-bit integer. `mnt` is a double's significand, with
// its hidden bit if it has one, and `exp` at most 1086. *flags is assigned, not added to: IOC where the integer is out
// of range, or else IXC if anything was lost; it is left alone if the result is exact.
std::uint64_t FPToFixed_64(int sgn, int exp, std::uint64_t mnt, bool u, FPRounding rounding, int* flags);
