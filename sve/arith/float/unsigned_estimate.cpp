// Estimates of reciprocals of fixed-point fractions.
#include "sve/arith/float/unsigned_estimate.h"

#include <bit>
#include <cmath>

namespace {

constexpr std::uint64_t half = 0x3FE0000000000000, quarter = 0x3FD0000000000000;

double truncated(double a) { return static_cast<double>(static_cast<int>(a)); }

// The middle of the interval of width 1/steps that holds a.
double interval_middle(double a, double steps) { return (truncated(a * steps) + 0.5) / steps; }

// a to the nearest multiple of 1/256.
double to_256ths(double a) { return truncated(a * 256.0 + 0.5) / 256.0; }

// The fraction of a double in [1, 2), or 2.0's, with an integer bit above it.
std::uint64_t to_fixed_point(double a) { return 0x80000000 | (std::bit_cast<std::uint64_t>(a) >> 21 & 0x7FFFFFFF); }

}  // namespace

double recip_estimate(double a) { return to_256ths(1.0 / interval_middle(a, 512.0)); }

double recip_sqrt_estimate(double a) { return to_256ths(1.0 / std::sqrt(interval_middle(a, a < 0.5 ? 512.0 : 256.0))); }

std::uint64_t UnsignedRecipEstimate(std::uint64_t operand, int /*size*/) {
  if (!(operand & 0x80000000)) return 0xFFFFFFFF;
  return to_fixed_point(recip_estimate(std::bit_cast<double>(half | (operand & 0x7FFFFFFF) << 21)));
}

std::uint64_t UnsignedRSqrtEstimate(std::uint64_t operand, int /*size*/) {
  if ((operand & 0xFFFFFFFF) < 0x40000000) return 0xFFFFFFFF;
  const std::uint64_t pattern =
      operand & 0x80000000 ? half | (operand & 0x7FFFFFFF) << 21 : quarter | (operand & 0x3FFFFFFF) << 22;
  return to_fixed_point(recip_sqrt_estimate(std::bit_cast<double>(pattern)));
}
