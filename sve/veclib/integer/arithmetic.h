// Element-wise integer arithmetic of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/integer/arithmetic.def"
#include "sve/veclib/members/declare.inc"
