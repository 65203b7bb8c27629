// Addresses in vectors, as functions of the vector library.
#pragma once

#include "sve/state/cpu_context.h"

#define MEMBERS "sve/veclib/integer/address.def"
#include "sve/veclib/members/declare.inc"
