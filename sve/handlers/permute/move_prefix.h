// MOVPRFX, carried out by itself: it is never joined with the instruction that follows.
#pragma once

#include "sve/handlers/handler_types.h"

// MOVPRFX (predicated). Active lanes are Zn's; an inactive one becomes zero where the predicate is /z, else it keeps
// its value. B, H, S, D by Zd's `size`.
handler_zpz sve_movprfx_zpz;

// MOVPRFX (unpredicated). Zd = Zn, all bytes.
handler_zz sve_movprfx_zz;
