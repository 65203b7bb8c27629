// Predicates that depend on no predicate: none, and as many elements as a pattern says.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/predicate/predicate_constant.def"
#include "sve/veclib/members/declare.inc"
