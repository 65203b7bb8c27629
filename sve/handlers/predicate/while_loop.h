// The predicate of a counted loop. Element i of Pd is 1 while Rn + j compares true with Rm for every j up to i; from
// the first that does not on, all are 0, also where Rn + j wraps and would compare true again. NZCV is set by the
// result as if every element were active.
#pragma once

#include "sve/handlers/handler_types.h"

// (Pd, Rn, Rm): X registers when Rn's size is 3, else the low 32 bits of both; number 31 reads as 0. B, H, S, D by Pd's
// size.
handler_prr sve_whilelt_prr;  // Rn + i < Rm, signed (WHILELT)
handler_prr sve_whilelo_prr;  // Rn + i < Rm, unsigned (WHILELO)
handler_prr sve_whilels_prr;  // Rn + i <= Rm, unsigned (WHILELS)
