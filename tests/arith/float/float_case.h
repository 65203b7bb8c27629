// What the tests of the floating-point library share: short names for controls and flags, and one form of case.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "sve/arith/float/fpscr.h"

namespace quern {

using half = std::uint16_t;
using single = std::uint32_t;
using double_bits = std::uint64_t;

constexpr std::uint32_t FZ = FPSCR_FZ, FZ16 = FPSCR_FZ16, DN = FPSCR_DN, AHP = FPSCR_AHP;

// FPSCR's rounding modes.
constexpr std::uint32_t RN = 0, RP = 1U << FPSCR_RMode_shift, RM = 2U << FPSCR_RMode_shift,
                        RZ = 3U << FPSCR_RMode_shift;

}  // namespace quern
