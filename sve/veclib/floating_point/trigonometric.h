// Helpers of trigonometric and exponential series of the vector library: flags are added to the context's fpsr.
#pragma once

#include "sve/state/cpu_context.h"
#include "sve/veclib/tags.h"

#define MEMBERS "sve/veclib/floating_point/trigonometric.def"
#include "sve/veclib/members/declare.inc"
