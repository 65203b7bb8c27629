// Lane values as integers wide enough for every intermediate result, and their shifts. An `is_unsigned` of 1 reads a
// value as unsigned, any other as signed.
#pragma once

#include <cstdint>

// Signed, two's complement.
__extension__ typedef __int128 int128;
__extension__ typedef unsigned __int128 uint128;

namespace quern {

// 2 to the power n as a pattern of 128 bits; n counts modulo 128.
constexpr uint128 power_of_two(int n) { return uint128{1} << (n & 127); }

}  // namespace quern

// The value of the low `size` bits of v, size at most 64 (Int). A size of 0 or less has no bits to read: unsigned that
// is 0; signed, bit size - 1 modulo 64 still counts as the sign, and -2^size comes of it.
constexpr int128 Int(std::uint64_t v, int size, int is_unsigned) {
  const uint128 low = size < 1 ? 0 : v & (quern::power_of_two(size) - 1);
  const bool negative = is_unsigned != 1 && (v >> ((size - 1) & 63) & 1) != 0;
  return static_cast<int128>(negative ? low - quern::power_of_two(size) : low);
}

// The same, unsigned (UInt).
constexpr int128 UInt(std::uint64_t v, int size) { return Int(v, size, 1); }

// v sign-extended from 8, 16, 32 or 64 bits; 0 for any other size (SInt).
constexpr std::int64_t SInt(std::uint64_t v, int size) {
  switch (size) {
    case 8: return static_cast<std::int8_t>(v);
    case 16: return static_cast<std::int16_t>(v);
    case 32: return static_cast<std::int32_t>(v);
    case 64: return static_cast<std::int64_t>(v);
    default: return 0;
  }
}

// The low 64 bits.
constexpr std::uint64_t bits(int128 i) { return static_cast<std::uint64_t>(i); }

// Arithmetic that wraps at 128 bits: the most negative value is its own absolute value (Abs).
constexpr int128 AddInt(int128 a, int128 b) {
  return static_cast<int128>(static_cast<uint128>(a) + static_cast<uint128>(b));
}
constexpr int128 SubInt(int128 a, int128 b) {
  return static_cast<int128>(static_cast<uint128>(a) - static_cast<uint128>(b));
}
constexpr int128 NegInt(int128 a) { return SubInt(0, a); }
constexpr int128 AbsInt(int128 a) { return a < 0 ? NegInt(a) : a; }

// x shifted left by n modulo 64 (LSL). The size has no say.
constexpr std::uint64_t ShiftLeft(std::uint64_t x, int n, int /*size*/) { return x << (n & 63); }

// a shifted right by n, with its sign (ASR). n above 65 acts as 65, which leaves nothing but the sign of a 64-bit
// value; but at n = 128 it is the two top bits that tell: all ones when both are set, else 0.
constexpr int128 ShiftRightInt(int128 a, int128 n) {
  if (n == 128) return a >> 126 == -1 ? -1 : 0;
  return a >> (n > 65 ? 65 : static_cast<int>(n & 127));
}

// a shifted left by n, and right where n is negative (LSL). n above 64 acts as 64: in 128 bits not all is shifted out.
constexpr int128 ShiftLeftInt(int128 a, int128 n) {
  if (n < 0) return ShiftRightInt(a, NegInt(n));
  return static_cast<int128>(static_cast<uint128>(a) << (n > 64 ? 64 : static_cast<int>(n)));
}
