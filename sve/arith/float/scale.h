// Scaling by powers of two.
#pragma once

#include <cstdint>

#include "sve/arith/float/fpscr.h"

// a * 2^n (FPScale, FSCALE), rounded by RMode, for any n. Flags: OFC, UFC, IXC, IOC for a signalling NaN, and IDC in
// single and double.
std::uint16_t FPScale16(std::uint16_t a, std::int16_t n, FPSCR& fpscr);
std::uint32_t FPScale32(std::uint32_t a, std::int32_t n, FPSCR& fpscr);
std::uint64_t FPScale64(std::uint64_t a, std::int64_t n, FPSCR& fpscr);
