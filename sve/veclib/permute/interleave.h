// Interleaving, de-interleaving and transposing, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/permute/interleave.def"
#include "sve/veclib/members/declare.inc"
