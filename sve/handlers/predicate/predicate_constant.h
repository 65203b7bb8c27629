// Predicates that depend on no predicate: PFALSE and PTRUE. Flags stay.
#pragma once

#include "sve/handlers/handler_types.h"

handler_p sve_pfalse_p;  // every byte of Pd = 0 (PFALSE)

// Sets the first elements of Pd, as many as `pattern` (0 to 31) names at Pd's size, and clears the others (PTRUE).
aarch64_decode_rc sve_ptrue_pi(cpu_state* state, aarch64_p_reg pd, unsigned int pattern);
