// Series of elements, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/integer/index.def"
#include "sve/veclib/members/declare.inc"
