// Estimates of reciprocals of 32-bit fixed-point fractions. Nothing in the emulator calls them; they complete the
// library. Alone in it, they compute in the host's double precision, in which each step is exact or rounded as IEEE 754
// says, so that all hosts agree; it must round to nearest.
#pragma once

#include <cstdint>

// 1 / a and 1 / sqrt(a) to a multiple of 1/256, for a in [1/2, 1) and [1/4, 1).
double recip_estimate(double a);
double recip_sqrt_estimate(double a);

// Estimates for the low 32 bits of `operand`, a fraction of 2^32, as a multiple of 2^-31 in [1, 2)
// (UnsignedRecipEstimate, UnsignedRSqrtEstimate): all ones where it is below 1/2, or below 1/4. `size` is ignored.
std::uint64_t UnsignedRecipEstimate(std::uint64_t operand, int size);
std::uint64_t UnsignedRSqrtEstimate(std::uint64_t operand, int size);
