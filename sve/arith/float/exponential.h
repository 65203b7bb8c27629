// The exponential accelerator.
#pragma once

#include <array>
#include <cstddef>

#include "sve/arith/float/format.h"

namespace quern {

// Entry i: the fraction field of 2^(i/n), rounded to nearest, n being the table's size.
template <float_bits T>
struct powers_of_two {
  static constexpr int index_bits = sizeof(T) == 2 ? 5 : 6;
  static const std::array<mantissa<T>, 1 << index_bits> fractions;
};

}  // namespace quern

// A power of two (FPExpA, FEXPA): 2^(i/n) for the i in the low bits of `a`, with the exponent field in the bits above
// it; n is 32 in half, 64 in single and double. Higher bits of a are ignored, and the sign is positive.
template <quern::float_bits T>
inline T FPEXPA(T a) {
  using powers = quern::powers_of_two<T>;
  const std::size_t i = a & (powers::fractions.size() - 1);
  const int exp = static_cast<int>(a >> powers::index_bits) & quern::float_format<T>::top_exponent;
  return quern::pack<T>(0, exp, powers::fractions[i]);
}
