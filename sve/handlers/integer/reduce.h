// Reductions of a vector's active lanes to a scalar in element 0 of Vd; all other bytes of that vector become zero. B,
// H, S, D by Zn's `size`. Without an active lane the result is the operation's neutral element.
#pragma once

#include "sve/handlers/handler_types.h"

handler_vpz sve_andv_vpz;   // ANDV, from all ones
handler_vpz sve_orv_vpz;    // ORV, from 0
handler_vpz sve_eorv_vpz;   // EORV, from 0
handler_vpz sve_uaddv_vpz;  // UADDV, from 0: elements zero-extended to 64 bits, a 64-bit sum at every size
handler_vpz sve_smaxv_vpz;  // SMAXV, from the smallest signed number
handler_vpz sve_sminv_vpz;  // SMINV, from the largest signed number
handler_vpz sve_umaxv_vpz;  // UMAXV, from 0
handler_vpz sve_uminv_vpz;  // UMINV, from all ones
