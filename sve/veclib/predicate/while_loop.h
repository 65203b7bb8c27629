// Loop control: predicates of the iterations that are left, and the termination of a loop.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/predicate/while_loop.def"
#include "sve/veclib/members/declare.inc"
