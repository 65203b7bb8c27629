// Counts and reversals of the bits of a lane, and its comparison with another.
#pragma once

#include <bit>
#include <cstdint>

#include "sve/arith/integer/wide_integer.h"

namespace quern {

// The low n bits of x, n at most 64; none for n below 1.
constexpr std::uint64_t low_bits(std::uint64_t x, int n) { return n < 1 ? 0 : x & (~std::uint64_t{0} >> (64 - n)); }

// Whether a is less than b, read in 8, 16, 32 or 64 bits, unsigned for an `is_unsigned` of 1.
constexpr bool less_in_size(std::uint64_t a, std::uint64_t b, int size, int is_unsigned) {
  return is_unsigned == 1 ? UInt(a, size) < UInt(b, size) : SInt(a, size) < SInt(b, size);
}
constexpr bool is_lane_size(int size) { return size == 8 || size == 16 || size == 32 || size == 64; }

}  // namespace quern

// The index of the highest set bit among the low n of x, or -1 (HighestSetBit).
constexpr int HighestBitSet(std::uint64_t x, int n) {
  return static_cast<int>(std::bit_width(quern::low_bits(x, n))) - 1;
}

// The zeros above the highest set bit of n bits: n for 0 (CLZ).
constexpr int CountLeadingZeroBits(std::uint64_t x, int n) { return n - 1 - HighestBitSet(x, n); }

// The bits below the sign of n bits that equal it (CLS). x may have anything above its n bits.
constexpr int CountLeadingSignBits(std::uint64_t x, int n) {
  return CountLeadingZeroBits((x & ~std::uint64_t{0} >> 1) ^ x >> 1, n - 1);
}

// The set bits among the low n (CNT).
constexpr int BitCount(std::uint64_t x, int n) { return std::popcount(quern::low_bits(x, n)); }

// The low n bits mirrored (RBIT).
constexpr std::uint64_t BitReverse(std::uint64_t x, int n) {
  std::uint64_t mirrored = 0;
  for (int i = 0; i < n; ++i) mirrored |= (x >> i & 1) << (n - 1 - i);
  return mirrored;
}

// The elements of 1, 2 or 4 bytes of a value of `bits` bits, in reversed order (REV8, REV16, REV32 and their like). Any
// other `bytes` gives 0, and so does an element wider than the value.
constexpr std::uint64_t Reverse(std::uint64_t x, int bits, int bytes) {
  if (bytes != 1 && bytes != 2 && bytes != 4) return 0;
  const int width = 8 * bytes, count = bits / width;
  std::uint64_t reversed = 0;
  for (int i = 0; i < count; ++i) reversed |= quern::low_bits(x >> i * width, width) << (count - 1 - i) * width;
  return reversed;
}

// The product of two polynomials over {0, 1} (PMULL).
constexpr uint128 PolynomialMult(std::uint64_t a, std::uint64_t b) {
  uint128 product = 0;
  for (int i = 0; i != 64; ++i)
    if ((a >> i & 1) != 0) product ^= uint128{b} << i;
  return product;
}

// The greater and the smaller of two lanes of `size` bits: the whole operand that wins, not its low bits alone, and a
// when they are equal. Any size but 8, 16, 32 and 64 gives 0 (Max, Min).
constexpr std::uint64_t Max(std::uint64_t a, std::uint64_t b, int size, int is_unsigned) {
  if (!quern::is_lane_size(size)) return 0;
  return quern::less_in_size(a, b, size, is_unsigned) ? b : a;
}
constexpr std::uint64_t Min(std::uint64_t a, std::uint64_t b, int size, int is_unsigned) {
  if (!quern::is_lane_size(size)) return 0;
  return quern::less_in_size(b, a, size, is_unsigned) ? b : a;
}
