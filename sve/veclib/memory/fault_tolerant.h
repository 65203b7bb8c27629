// Contiguous first-fault and non-fault loads, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/memory/fault_tolerant.def"
#include "sve/veclib/members/declare.inc"
