// Integer operations on one vector, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/integer/integer_unary.def"
#include "sve/veclib/members/declare.inc"
