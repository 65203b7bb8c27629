// The tables of the judge, each in a file of its own.
#pragma once

#include <vector>

#include "tests/arith/float/judge/routine.h"

namespace quern::judge {

// Addition, multiplication and their kin, comparison, division, roots, estimates and steps: scalar instructions.
std::vector<routine> arithmetic_routines();

// Between the formats, to and from integers, and rounding to an integral value: scalar instructions.
std::vector<routine> conversion_routines();

// Trigonometric and exponential helpers: element 0 of SVE instructions.
std::vector<routine> helper_routines();

}  // namespace quern::judge
