// Integer sums, differences and extremes, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/integer/integer_arithmetic.def"
#include "sve/veclib/members/declare.inc"
