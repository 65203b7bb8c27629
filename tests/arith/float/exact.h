// A judge for quotients and roots of normal range: schoolbook integer arithmetic, a bit at a time, which shares nothing
// with the library but the format's numbers.
#pragma once

#include <random>

#include "tests/arith/float/float_case.h"

namespace quern {

// What a case must answer.
template <class T>
struct exact_result {
  T value;
  int flags;
};

// A positive number of the format by its parts: mnt has exactly fraction_bits + 1 bits, and its lowest bit counts
// 2^(exp - bias - fraction_bits).
template <class T>
struct parts {
  int exp;
  uint128 mnt;
  explicit parts(T pattern)
      : exp(static_cast<int>(pattern >> float_format<T>::fraction_bits)),
        mnt(pattern & float_format<T>::fraction_mask) {
    if (exp != 0) {
      mnt += float_format<T>::hidden_bit;
    } else {
      for (exp = 1; mnt < float_format<T>::hidden_bit; --exp) mnt *= 2;
    }
  }
};

// `whole` and what is left over, in halves of its last bit: 0 nothing, 1 less than a half, 2 a half, 3 more.
template <class T>
exact_result<T> round_exactly(int sgn, int exp, uint128 whole, int halves, std::uint32_t mode) {
  const bool up = mode == RN   ? halves == 3 || (halves == 2 && whole % 2 == 1)
                  : mode == RP ? sgn == 0 && halves != 0
                  : mode == RM ? sgn == 1 && halves != 0
                               : false;
  const uint128 magnitude = (static_cast<uint128>(exp - 1) << float_format<T>::fraction_bits) + whole + (up ? 1 : 0);
  return {static_cast<T>(zero<T>(sgn) | static_cast<T>(magnitude)), halves != 0 ? IXC : 0};
}

inline int in_halves(uint128 remainder, uint128 of) {
  return remainder == 0 ? 0 : 2 * remainder < of ? 1 : 2 * remainder == of ? 2 : 3;
}

// Whether a biased exponent is far enough from both ends that a result's rounding stays in the normal range.
template <class T>
bool in_range(int exp) {
  return exp >= 1 && exp < float_format<T>::top_exponent - 1;
}

}  // namespace quern
