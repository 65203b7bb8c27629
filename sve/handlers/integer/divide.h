// Integer division, truncated towards zero, merging. S and D: the `dsize` code 3 is D, any other is S. A division by
// zero gives 0; the smallest number by -1 gives itself. Neither traps.
#pragma once

#include "sve/handlers/handler_types.h"

handler_zpz sve_sdiv_zpz;   // SDIV: Zdn = Zdn / Zm, signed
handler_zpz sve_sdivr_zpz;  // SDIVR: Zdn = Zm / Zdn, signed
handler_zpz sve_udiv_zpz;   // UDIV: Zdn = Zdn / Zm, unsigned
handler_zpz sve_udivr_zpz;  // UDIVR: Zdn = Zm / Zdn, unsigned
