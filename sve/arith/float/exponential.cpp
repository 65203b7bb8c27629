// The exponential accelerator's tables of powers of two.
#include "sve/arith/float/exponential.h"

using namespace quern;

namespace {

// Numbers in [1, 2) with 63 bits below the point.
using fixed_63 = std::uint64_t;
constexpr fixed_63 one = fixed_63{1} << 63;

constexpr fixed_63 multiply(fixed_63 a, fixed_63 b) { return static_cast<fixed_63>(uint128{a} * b >> 63); }

// The square root of `square`, 2 or less.
constexpr fixed_63 root(uint128 square) {
  fixed_63 found = one;
  for (fixed_63 bit = one >> 1; bit != 0; bit >>= 1)
    if (uint128{found | bit} * (found | bit) <= square << 63) found |= bit;
  return found;
}

// 2^(i / 2^index_bits).
constexpr fixed_63 power_of_two(std::size_t i, int index_bits) {
  fixed_63 power = one, factor = root(uint128{one} << 1);
  for (int bit = index_bits - 1; bit >= 0; --bit, factor = root(factor))
    if (i >> bit & 1) power = multiply(power, factor);
  return power;
}

template <float_bits T>
constexpr auto fractions = [] {
  constexpr int index_bits = powers_of_two<T>::index_bits;
  std::array<mantissa<T>, 1 << index_bits> table{};
  constexpr int dropped = 63 - float_format<T>::fraction_bits;
  for (std::size_t i = 0; i != table.size(); ++i) {
    const fixed_63 above_one = power_of_two(i, index_bits) - one;
    table[i] = static_cast<mantissa<T>>((above_one + (fixed_63{1} << (dropped - 1))) >> dropped);
  }
  return table;
}();

static_assert(fractions<std::uint16_t>[1] == 0x16 && fractions<std::uint16_t>[2] == 0x2D);
static_assert(fractions<std::uint16_t>[3] == 0x45 && fractions<std::uint16_t>[31] == 0x3D4);
static_assert(fractions<std::uint32_t>[1] == 0x164D2 && fractions<std::uint32_t>[2] == 0x2CD87);
static_assert(fractions<std::uint32_t>[3] == 0x43A29 && fractions<std::uint32_t>[63] == 0x7D3E0C);
static_assert(fractions<std::uint64_t>[1] == 0x2C9A3E778061 && fractions<std::uint64_t>[2] == 0x59B0D3158574);
static_assert(fractions<std::uint64_t>[63] == 0xFA7C1819E90D8);

}  // namespace

template <float_bits T>
const std::array<mantissa<T>, 1 << powers_of_two<T>::index_bits> powers_of_two<T>::fractions = ::fractions<T>;

template struct quern::powers_of_two<std::uint16_t>;
template struct quern::powers_of_two<std::uint32_t>;
template struct quern::powers_of_two<std::uint64_t>;
