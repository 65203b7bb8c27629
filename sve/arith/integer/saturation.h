// Saturation to the range of a lane, and the arithmetic that saturates. An `is_unsigned` of 1 is the unsigned range,
// any other the signed one.
#pragma once

#include <algorithm>
#include <cstdint>

#include "sve/arith/integer/big_integer.h"
#include "sve/arith/integer/wide_integer.h"

// A result, and 1 if it was saturated, else 0.
struct SatResult {
  std::uint64_t value;
  std::uint32_t saturated;

  friend constexpr bool operator==(const SatResult&, const SatResult&) = default;
};

// n one bits, n from 1 to 64 (Ones). For n = 0 all 64 bits are ones as well, since the shift counts modulo 64.
constexpr std::uint64_t ones(int n) { return ~std::uint64_t{0} >> ((64 - n) & 63); }

namespace quern {

// The greatest and the least signed value of N bits.
constexpr int128 signed_maximum_of(int N) { return static_cast<int128>(power_of_two(N - 1) - 1); }
constexpr int128 signed_minimum_of(int N) { return static_cast<int128>(uint128{0} - power_of_two(N - 1)); }

}  // namespace quern

// i saturated to N bits, N up to 64 (SatQ). The value has N bits: those above are 0, whatever its sign.
constexpr SatResult SatQ(int128 i, int N, int is_unsigned) {
  if (is_unsigned == 1) {
    if (i < 0) return {0, 1};
    return i >> N == 0 ? SatResult{bits(i) & ones(N), 0} : SatResult{ones(N), 1};
  }
  if (i > quern::signed_maximum_of(N)) return {bits(quern::signed_maximum_of(N)), 1};
  if (i < quern::signed_minimum_of(N)) return {static_cast<std::uint64_t>(quern::power_of_two(N - 1)), 1};
  return {bits(i) & ones(N), 0};
}

// i saturated to N bits, N up to 127. The value is not cut to N bits: a negative one keeps its sign above them.
constexpr SatResult SatQShift(int128 i, int N, int is_unsigned) {
  const int128 least = is_unsigned == 1 ? 0 : quern::signed_minimum_of(N);
  const int128 greatest =
      is_unsigned == 1 ? static_cast<int128>(quern::power_of_two(N) - 1) : quern::signed_maximum_of(N);
  if (i < least) return {bits(least), 1};
  if (i > greatest) return {bits(greatest), 1};
  return {bits(i), 0};
}

// The low word of i saturated to N bits unsigned, N up to 64. The bits of i above it don't count at first; when the
// word is too great, the value is N ones unless i has bits above 2 * N, which makes it 0.
constexpr SatResult SatQUShift(int128 i, int N) {
  if (bits(i) <= static_cast<std::uint64_t>(quern::power_of_two(N) - 1)) return {bits(i), 0};
  return {i >> 2 * N == 0 ? ones(N) : 0, 1};
}

// b saturated to N bits, N up to 64, as SatQ does it.
constexpr SatResult SatQBigInt(BigInt b, int N, int is_unsigned) {
  const BigInt sign_and_above = ShiftRightBigInt(b, 127);
  const auto all = [&](std::uint64_t word) {
    return std::all_of(sign_and_above.words, sign_and_above.words + 4,
                       [=](std::uint64_t each) { return each == word; });
  };
  const bool negative = b.words[3] >> 63 != 0;
  // A value that 128 bits don't hold is beyond the range of N: the extreme of 128 bits stands for it.
  if (!all(0) && !all(~std::uint64_t{0}))
    return SatQ(negative ? quern::signed_minimum_of(128) : quern::signed_maximum_of(128), N, is_unsigned);
  return SatQ(static_cast<int128>(uint128{b.words[1]} << 64 | b.words[0]), N, is_unsigned);
}

// a shifted left by n, and right where n is negative, saturated to `size` bits (SQSHL, UQSHL).
constexpr SatResult ShiftQLeftInt(int128 a, int128 n, int size, int is_unsigned) {
  if (n < 0) return {bits(ShiftRightInt(a, NegInt(n))), 0};
  if (n < size)
    return SatQShift(static_cast<int128>(static_cast<uint128>(a) << static_cast<int>(n)), size, is_unsigned);
  if (a == 0) return {0, 0};
  if (is_unsigned == 1) return {ones(size), 1};
  return {bits(a > 0 ? quern::signed_maximum_of(size) : quern::signed_minimum_of(size)), 1};
}

// a + b of `size` bits each. A sum within the range is not cut to them: a negative one keeps its sign above (SQADD,
// UQADD).
constexpr SatResult SatAdd(std::uint64_t a, std::uint64_t b, int size, int is_unsigned) {
  const int128 sum = Int(a, size, is_unsigned) + Int(b, size, is_unsigned);
  const SatResult result = SatQ(sum, size, is_unsigned);
  return result.saturated != 0 ? result : SatResult{bits(sum), 0};
}

// a - b of `size` bits each. Unlike a sum's, the value has `size` bits alone (SQSUB, UQSUB).
constexpr SatResult SatSub(std::uint64_t a, std::uint64_t b, int size, int is_unsigned) {
  return SatQ(Int(a, size, is_unsigned) - Int(b, size, is_unsigned), size, is_unsigned);
}

// The low word of a * b, saturated or not, and whether `size` bits don't hold the product.
constexpr SatResult SatMult(std::uint64_t a, std::uint64_t b, int size, int is_unsigned) {
  const int128 product = static_cast<int128>(static_cast<uint128>(Int(a, size, is_unsigned)) *
                                             static_cast<uint128>(Int(b, size, is_unsigned)));
  return {bits(product), SatQ(product, size, is_unsigned).saturated};
}

// a of `size` bits shifted left by n, or by `size` where that is less.
constexpr SatResult SatShiftLeft(std::uint64_t a, std::uint64_t n, int size, int is_unsigned) {
  const int count = static_cast<int>(std::min(n, static_cast<std::uint64_t>(size)));
  const int128 shifted = ShiftLeftInt(Int(a, size, is_unsigned), count);
  if (SatQ(shifted, size, is_unsigned).saturated == 0) return {bits(shifted), 0};
  if (is_unsigned == 1) return {ones(size), 1};
  const bool negative = (a >> ((size - 1) & 63) & 1) != 0;
  return {bits(negative ? static_cast<int128>(quern::power_of_two(size - 1)) : quern::signed_maximum_of(size)), 1};
}

// Signed a of `size` bits shifted left by n, saturated to unsigned: a negative a is 0, anything else too great is ones
// (SQSHLU).
constexpr SatResult SatShiftLeftU(std::uint64_t a, std::uint64_t n, int size) {
  const int128 value = Int(a, size, 0);
  const int128 shifted = ShiftLeftInt(value, static_cast<int>(std::min(n, static_cast<std::uint64_t>(size))));
  if (shifted >> size == 0) return {bits(shifted), 0};
  return {value < 0 ? 0 : ones(size), 1};
}
