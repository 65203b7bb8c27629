// The last active element of a vector as a scalar. Flags stay. B, H, S, D by the vector's size.
#pragma once

#include "sve/handlers/handler_types.h"

// (Rd, Pg, Zn): Rd = the last active element of Zn, or its last element when none is active, zero-extended to 64 bits.
// Number 31: the result is dropped (LASTB, scalar).
handler_rpz sve_lastb_rpz;

// The same value to element 0 of vector register vd (0 to 31); all its other bytes become 0 (LASTB, SIMD&FP scalar).
aarch64_decode_rc sve_lastb_vpz(cpu_state* state, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn);

// (Rdn, Pg, Zm): Rdn = the last active element of Zm, or Rdn cut to the element's width when none is active,
// zero-extended to 64 bits. Number 31 reads as 0, and the result is dropped (CLASTB, scalar).
handler_rpz sve_clastb_rpz;
