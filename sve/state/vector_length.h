// The build's one vector length, from which every size follows.
#pragma once

#include <bit>

inline constexpr int VL_BITS = QUERN_VL_BITS;
inline constexpr int VL_BYTES = VL_BITS / 8;

static_assert(VL_BITS >= 128 && VL_BITS <= 2048 && std::has_single_bit(unsigned{VL_BITS}),
              "VL_BITS is a power of two from 128 to 2048");
