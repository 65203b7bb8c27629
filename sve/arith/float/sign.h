// Operations on the sign alone.
#pragma once

#include "sve/arith/float/format.h"

// The pattern with its sign cleared (FPAbs) or flipped (FPNeg), a NaN's too. Nothing is flushed, made quiet or flagged.
template <quern::float_bits T>
constexpr T FPAbs(T a) {
  return static_cast<T>(a & ~quern::float_format<T>::sign_bit);
}
template <quern::float_bits T>
constexpr T FPNeg(T a) {
  return static_cast<T>(a ^ quern::float_format<T>::sign_bit);
}
