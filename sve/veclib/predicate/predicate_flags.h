// The test of a predicate.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/predicate/predicate_flags.def"
#include "sve/veclib/members/declare.inc"
