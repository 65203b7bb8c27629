// Operations on the sign alone.
#pragma once

#include "sve/arith/float/format.h"
#include "sve/state/lane_group.h"

// The pattern with its sign cleared (FPAbs) or flipped (FPNeg), a NaN's too; of a group, every lane's. Nothing is
// flushed, made quiet or flagged.
template <class T>
requires quern::float_bits<quern::lane_of<T>>
constexpr T FPAbs(T a) { return static_cast<T>(a & quern::float_format<quern::lane_of<T>>::magnitude_mask); }
template <class T>
requires quern::float_bits<quern::lane_of<T>>
constexpr T FPNeg(T a) { return static_cast<T>(a ^ quern::float_format<quern::lane_of<T>>::sign_bit); }
