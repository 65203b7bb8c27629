// Contiguous loads and stores, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/memory/contiguous.def"
#include "sve/veclib/members/declare.inc"
