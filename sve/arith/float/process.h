// One value through the library's front and back end.
#pragma once

#include <cstdint>

#include "sve/arith/float/fpscr.h"

// `value` in canonical form: a signalling NaN made quiet with IOC raised (any NaN the default one under DN); a
// subnormal under its format's flush bit a zero of its sign, with IDC raised in single and double; all else unchanged.
// Flags go into `fpscr`.
std::uint16_t FPProcess16(std::uint16_t value, FPSCR& fpscr);
std::uint32_t FPProcess32(std::uint32_t value, FPSCR& fpscr);
std::uint64_t FPProcess64(std::uint64_t value, FPSCR& fpscr);
