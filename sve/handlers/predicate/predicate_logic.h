// Logic of predicate bytes under a governing predicate. Bit 0 of Pg's byte makes a byte active; an inactive byte
// becomes 0 under the zeroing qualifier and keeps Pd's old byte under any other. Flags stay.
#pragma once

#include "sve/handlers/handler_types.h"

handler_pppp sve_and_pppp;  // Pn AND Pm, whole bytes (AND, predicates)
handler_pppp sve_orr_pppp;  // Pn OR Pm, whole bytes (ORR, predicates)
handler_pppp sve_eor_pppp;  // Pn XOR Pm, whole bytes (EOR, predicates)
handler_pppp sve_bic_pppp;  // Pn AND NOT Pm, whole bytes (BIC, predicates)
handler_pppp sve_nor_pppp;  // 1 when the whole bytes of Pn and Pm are zero, else 0 (NOR)
handler_ppp sve_not_ppp;    // (Pd, Pg, Pn): the inverse of bit 0 of Pn's byte (NOT, predicate)
handler_pppp sve_sel_pppp;  // Pn's byte where active, else Pm's; no qualifier (SEL, predicates)
