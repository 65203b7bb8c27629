// The trigonometric accelerator: a square that carries the quadrant's sign, and the steps of the Taylor-like series.
#pragma once

#include <cstdint>

#include "sve/arith/float/format.h"
#include "sve/arith/float/fpscr.h"

// Coefficient `i`, from 0 to 7, of the sine's series or the cosine's.
template <quern::float_bits T>
T trigonometric_coefficient(std::uint64_t i, bool of_cosine);

// Coefficient `i` + a * |b| (FPTrigMAdd, FTMAD), for i from 0 to 7: a coefficient of the sine's series for a positive
// b, of the cosine's for a negative one. All else as FPMulAdd does it, with the coefficient as its addend.
template <quern::float_bits T>
T FPTRIMADD(std::uint64_t i, T a, T b, FPSCR& fpscr);

// a * a with bit 0 of `b` as its sign (FPTrigSMul, FTSMUL), rounded by RMode as a positive number. A NaN keeps its own
// sign. Flags: OFC, UFC, IXC, IOC for a signalling NaN, and IDC in single and double.
template <quern::float_bits T>
T FPTRISMUL(T a, T b, FPSCR& fpscr);
