// Loads of one memory element into every active lane (LD1RB to LD1RD). An inactive lane becomes 0; with no active lane
// no memory is touched. The address is base + imm * the memory element's size. Not traced.
//
// In a name, b, h, w, d is the memory element, s before it a sign-extending load, and _h, _s, _d a wider lane.
#pragma once

#include "sve/handlers/handler_types.h"

#define ELEMENT(letters, M, T, U) handler_zpri_unsigned sve_ld1r##letters##_zpri;
#include "sve/handlers/memory/elements.def"
