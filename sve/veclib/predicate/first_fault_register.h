// The first-fault register of the context, read and written.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/predicate/first_fault_register.def"
#include "sve/veclib/members/declare.inc"
