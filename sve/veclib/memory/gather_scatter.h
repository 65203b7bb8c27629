// Gathers, first-fault gathers and scatters, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/memory/gather_scatter.def"
#include "sve/veclib/members/declare.inc"
