// Breaks: partitions of a predicate at its first break, and of one loop's iteration by the one before.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/predicate/predicate_break.def"
#include "sve/veclib/members/declare.inc"
