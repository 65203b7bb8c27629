// Non-fault and first-fault loads (LDNF1, LDFF1) with a direct handler. They take no fault and survive it: they probe
// one byte of a page beforehand, and where a page can't be read they clear bytes of FFR, which they never set. Their
// traces tell of every active lane, those that were not read included.
//
// In a name, b, h, w, d is the memory element, s before it a sign-extending load, and _h, _s, _d a wider lane.
#pragma once

#include "sve/handlers/handler_types.h"

// LDNF1: each page is probed once a lane reaches it. An active lane in an unreadable page keeps its old value and has
// its element's bytes of FFR cleared; lanes of later, readable pages load. An inactive lane becomes 0. The offset is
// imm times the bytes that all lanes touch in memory.
#define ELEMENT(letters, M, T, U) handler_zpri sve_ldnf1##letters##_zpri;
#include "sve/handlers/memory/elements.def"

// LDFF1: decided once, from the distance to the end of the page. When the span reaches it and the next page can't be
// read, only the lanes that fit in the first page are loaded, counted as if each took a whole lane of memory; FFR is
// cleared from there to its end, and the lanes beyond keep their old values. The first page is not probed: a bad one is
// a fault of the host. The address is base + index * the memory element's size. The halfword and the sign-extending
// forms go to the vector library.
#define ELEMENT(letters, M, T, U) handler_zprr sve_ldff1##letters##_scaled_zprr;
#define HALFWORD(letters, M, T, U)
#define SIGNED(letters, M, T, U)
#include "sve/handlers/memory/elements.def"
