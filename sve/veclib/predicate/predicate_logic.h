// Logic on predicates, bit by bit: an element has one bit, whatever the instruction's.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/predicate/predicate_logic.def"
#include "sve/veclib/members/declare.inc"
