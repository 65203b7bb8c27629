// Shifts. B, H, S, D by the destination's `dsize`, or by its `size` where it is no source. A count is the whole lane of
// Zm, or the whole immediate, unsigned; at the element's width or more, LSL and LSR give 0 and ASR all sign bits.
#pragma once

#include "sve/handlers/handler_types.h"

// Zdn = Zdn shifted by Zm, active lanes; an inactive lane keeps its value.
handler_zpz sve_lsl_zpz;  // LSL (vectors)
handler_zpz sve_lsr_zpz;  // LSR (vectors)
handler_zpz sve_asr_zpz;  // ASR (vectors)

// Zdn = Zdn shifted by the immediate, active lanes; an inactive lane keeps its value.
handler_zpi sve_lsl_zpi;  // LSL (immediate, predicated)
handler_zpi sve_lsr_zpi;  // LSR (immediate, predicated). No thunk calls it: its instruction goes to the library
handler_zpi sve_asr_zpi;  // ASR (immediate, predicated)

// Zd = Zn shifted by the immediate, every lane.
handler_zzi sve_lsl_zzi;  // LSL (immediate, unpredicated)
handler_zzi sve_lsr_zzi;  // LSR (immediate, unpredicated). No thunk calls it: its instruction goes to the library
handler_zzi sve_asr_zzi;  // ASR (immediate, unpredicated)
