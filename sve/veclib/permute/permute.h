// Elements moved within and between vectors by position, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/permute/permute.def"
#include "sve/veclib/members/declare.inc"
