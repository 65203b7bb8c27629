// Selecting elements, and copying one value to many, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/permute/element_move.def"
#include "sve/veclib/members/declare.inc"
