// Integers of 256 bits, for products and shifts that outgrow 128.
#pragma once

#include <cstdint>

#include "sve/arith/integer/wide_integer.h"

// Two's complement; the least significant word first.
struct BigInt {
  std::uint64_t words[4];
};

constexpr BigInt toBigInt(int128 i) {
  const std::uint64_t sign = i < 0 ? ~std::uint64_t{0} : 0;
  return {{bits(i), bits(i >> 64), sign, sign}};
}

// a + b, wrapping at 256 bits.
constexpr BigInt AddBigInt(BigInt a, BigInt b) {
  uint128 carried = 0;
  for (int w = 0; w != 4; ++w) {
    carried += uint128{a.words[w]} + b.words[w];
    a.words[w] = static_cast<std::uint64_t>(carried);
    carried >>= 64;
  }
  return a;
}

// b shifted right by n, 0 to 255, with its sign (ASR).
constexpr BigInt ShiftRightBigInt(BigInt b, unsigned int n) {
  const std::uint64_t sign = b.words[3] >> 63 != 0 ? ~std::uint64_t{0} : 0;
  const auto word = [&](unsigned int w) { return w < 4 ? b.words[w] : sign; };
  BigInt shifted{};
  for (unsigned int w = 0; w != 4; ++w) {
    const unsigned int from = w + n / 64;
    shifted.words[w] = static_cast<std::uint64_t>((uint128{word(from + 1)} << 64 | word(from)) >> n % 64);
  }
  return shifted;
}
