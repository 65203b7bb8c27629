// Counts of elements, and what they are added to, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/predicate/element_count.def"
#include "sve/veclib/members/declare.inc"
