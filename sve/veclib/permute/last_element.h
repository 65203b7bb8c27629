// The last active element, and the one after it, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/permute/last_element.def"
#include "sve/veclib/members/declare.inc"
