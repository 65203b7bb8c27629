// Predicates that partition a loop: BRKA, BRKB, BRKN, BRKPB and PNEXT.
#pragma once

#include "sve/handlers/handler_types.h"

// (Pd, Pg, Pn): active bytes up to the first active one that is set in Pn are 1, later active ones 0; inactive bytes
// are 0 under the zeroing qualifier of Pg, else Pd's old byte. Flags stay.
handler_ppp sve_brka_ppp;  // the break byte itself is 1 (BRKA)
handler_ppp sve_brkb_ppp;  // the break byte itself is 0 (BRKB)

// (Pdm, Pg, Pn): keeps Pdm if Pn's byte at the last active byte of Pg is not zero, the whole byte counting; else, and
// when no byte is active, clears Pdm.
handler_ppp sve_brkn_ppp;   // flags stay (BRKN)
handler_ppp sve_brkns_ppp;  // sets NZCV by Pdm as if every byte were active (BRKNS)

// (Pd, Pg, Pn, Pm): all false if Pn's byte at the last active byte of Pg is zero, the whole byte counting, or if no
// byte is active; else the active bytes before the first active one that is set in Pm are 1, and all others 0.
handler_pppp sve_brkpb_pppp;   // flags stay (BRKPB)
handler_pppp sve_brkpbs_pppp;  // sets NZCV by the result under Pg, byte elements (BRKPBS)

// (Pdn, Pg): Pdn = the first element active in Pg after Pdn's last set element, or from 0 when none is set; all false
// when there is none. Whether Pdn's last set element is active does not matter. Sets NZCV by the result under Pg. B, H,
// S, D by Pdn's size (PNEXT).
handler_pp sve_pnext_pp;
