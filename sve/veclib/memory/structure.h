// Structure loads and stores, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/memory/structure.def"
#include "sve/veclib/members/declare.inc"
