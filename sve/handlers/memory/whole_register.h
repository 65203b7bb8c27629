// Spill and fill of whole registers (LDR and STR of a vector or a predicate). No predicate governs them, and they are
// not traced.
#pragma once

#include "sve/handlers/handler_types.h"

// A vector: VL_BYTES bytes at base + imm * VL_BYTES.
handler_zri sve_ldr_zri, sve_str_zri;

// A predicate: its image of one bit for each vector byte, at base + imm * VL_BYTES / 8. A fill writes bytes of 0 or 1.
handler_pri sve_ldr_pri, sve_str_pri;
