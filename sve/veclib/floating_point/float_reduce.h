// Floating-point reductions of the vector library: flags are added to the context's fpsr.
#pragma once

#include "sve/state/cpu_context.h"
#include "sve/veclib/tags.h"

#define MEMBERS "sve/veclib/floating_point/float_reduce.def"
#include "sve/veclib/members/declare.inc"
