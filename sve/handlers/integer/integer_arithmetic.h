// Integer addition, subtraction, maximum and minimum of whole elements, wrapping. Sizes B, H, S, D; the size code is
// the destination's `size`, or its `dsize` where it is a source too. A predicate merges: an inactive lane keeps its
// value.
#pragma once

#include "sve/handlers/handler_types.h"

// Zd = Zn op Zm, every lane.
handler_zzz sve_add_zzz;  // ADD (vectors, unpredicated)
handler_zzz sve_sub_zzz;  // SUB (vectors, unpredicated)

// Zdn = Zdn op immediate, every lane. The immediate is already shifted, and is zero-extended or cut to the element.
handler_zi sve_add_zi;  // ADD (immediate). In bytes, 0x100 and 0x200 start and stop tracing (trace_marker.h)
handler_zi sve_sub_zi;  // SUB (immediate)

// Zdn = Zdn op Zm, active lanes.
handler_zpz sve_add_zpz;   // ADD (vectors, predicated)
handler_zpz sve_sub_zpz;   // SUB (vectors, predicated)
handler_zpz sve_smax_zpz;  // SMAX (vectors), signed
handler_zpz sve_smin_zpz;  // SMIN (vectors), signed
handler_zpz sve_umax_zpz;  // UMAX (vectors), unsigned
handler_zpz sve_umin_zpz;  // UMIN (vectors), unsigned
