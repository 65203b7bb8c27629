// Integer multiplication and dot products, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/integer/multiply.def"
#include "sve/veclib/members/declare.inc"
