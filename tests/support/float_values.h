// Floating-point numbers at which operations change their ways, and controls to compute under.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "sve/state/operands.h"
#include "tests/random_cases/random_source.h"

namespace quern {

// FPCR's rounding modes with flushing and default NaNs on and off.
inline std::vector<std::uint32_t> all_controls() {
  std::vector<std::uint32_t> all;
  for (std::uint32_t i = 0; i != 16; ++i) all.push_back(i << 22);
  return all;
}

constexpr unsigned exponent_bits(unsigned width) { return width == 64 ? 11 : width == 32 ? 8 : 5; }

// The pattern of a sign, an exponent field, the top one for any above it, and the low bits of a fraction.
constexpr std::uint64_t float_pattern(unsigned width, std::uint64_t sign, std::uint64_t exponent,
                                      std::uint64_t fraction) {
  const unsigned fraction_bits = width - 1 - exponent_bits(width);
  const std::uint64_t fraction_mask = (std::uint64_t{1} << fraction_bits) - 1;
  const std::uint64_t top = (std::uint64_t{1} << exponent_bits(width)) - 1;
  return sign << (width - 1) | std::min(exponent, top) << fraction_bits | (fraction & fraction_mask);
}

// Zeros, subnormals, the ends of the normal range, infinities, quiet and signalling NaNs with payloads; numbers near 1
// and each other, halves of integers, numbers around the ends of the 32-bit and 64-bit integers; and any pattern.
inline std::uint64_t float_value(random_source& random, unsigned width) {
  const std::uint64_t top = (std::uint64_t{1} << exponent_bits(width)) - 1, bias = top / 2;
  const unsigned fraction_bits = width - 1 - exponent_bits(width);
  const std::uint64_t fraction = random.next(), quiet = std::uint64_t{1} << (fraction_bits - 1);
  const std::uint64_t fractions[] = {0, 1, quiet, quiet - 1, quiet + 1, ~std::uint64_t{0}, fraction, fraction | quiet};
  const std::uint64_t exponents[] = {
      0,         0,         1,         2,         top - 1,   top,       top,      bias,      bias - 1, bias + 1,
      bias + 30, bias + 31, bias + 32, bias + 62, bias + 63, bias + 64, bias + 5, bias - 30, bias / 2, bias + bias / 2};
  const std::uint64_t sign = random.below(2), exponent = random.pick(exponents), chosen = random.pick(fractions);
  if (random.one_in(8)) return fraction & (~std::uint64_t{0} >> (64 - width));
  return float_pattern(width, sign, exponent, chosen);
}

// A number of the size; in a lane of 64 bits now and then a single below other bits, as conversions read it.
inline std::uint64_t lane_value(random_source& random, std::uint32_t size) {
  if (size == size_d && random.one_in(3)) return random.next() << 32 | float_value(random, 32);
  return float_value(random, 8u << size);
}

}  // namespace quern
