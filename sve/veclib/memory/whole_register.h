// Loads and stores of whole registers, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/memory/whole_register.def"
#include "sve/veclib/members/declare.inc"
