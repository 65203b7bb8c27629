// Bitwise logic of vectors. No size unless predicated (B, H, S, D by Zdn's `dsize`, merging).
#pragma once

#include "sve/handlers/handler_types.h"

// Zd = Zn op Zm, all bits.
handler_zzz sve_and_zzz;  // AND (vectors, unpredicated)
handler_zzz sve_orr_zzz;  // ORR (vectors, unpredicated)
handler_zzz sve_eor_zzz;  // EOR (vectors, unpredicated)
handler_zzz sve_bic_zzz;  // BIC (vectors, unpredicated): Zn AND NOT Zm

// Zdn = Zdn op mask, every doubleword.
handler_zi_mask sve_and_zi;  // AND (immediate)
handler_zi_mask sve_orr_zi;  // ORR (immediate)
handler_zi_mask sve_eor_zi;  // EOR (immediate)

// Zdn = Zdn op Zm, active lanes.
handler_zpz sve_and_zpz;  // AND (vectors, predicated)
handler_zpz sve_orr_zpz;  // ORR (vectors, predicated)
handler_zpz sve_eor_zpz;  // EOR (vectors, predicated)
handler_zpz sve_bic_zpz;  // BIC (vectors, predicated): Zdn AND NOT Zm
