// Integer multiplication, with and without addition; the low half of a product, wrapping. B, H, S, D by the `dsize` of
// the operand that is source and destination. A predicate merges: an inactive lane keeps its value.
#pragma once

#include "sve/handlers/handler_types.h"

handler_zi_signed sve_mul_zi;  // MUL (immediate): Zdn = Zdn * immediate, every lane; the immediate is sign-extended
handler_zpz sve_mul_zpz;       // MUL (vectors): Zdn = Zdn * Zm

// The state, then Zda, Pg, Zn, Zm.
handler_zpzz sve_mla_zpzz;  // MLA: Zda = Zda + Zn * Zm
handler_zpzz sve_mls_zpzz;  // MLS: Zda = Zda - Zn * Zm

// The state, then Zdn, Pg, Zm, Za.
handler_zpzz sve_mad_zpzz;  // MAD: Zdn = Za + Zdn * Zm
handler_zpzz sve_msb_zpzz;  // MSB: Zdn = Za - Zdn * Zm
