// Moves of the first-fault register. Whole bytes are copied: there is no element size. Flags stay.
#pragma once

#include "sve/handlers/handler_types.h"

handler_p sve_rdffr_p;    // Pd = FFR (RDFFR, unpredicated)
handler_pp sve_rdffr_pp;  // (Pd, Pg): Pd = FFR AND Pg, whole bytes (RDFFR, predicated)
handler_p sve_wrffr_p;    // FFR = Pn (WRFFR)

// Every byte of FFR = 1, whatever the element size it is read with later (SETFFR).
aarch64_decode_rc sve_setffr(cpu_state* state);
