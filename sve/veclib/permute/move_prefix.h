// MOVPRFX, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/permute/move_prefix.def"
#include "sve/veclib/members/declare.inc"
