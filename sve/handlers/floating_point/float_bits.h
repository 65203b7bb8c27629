// Floating-point instructions that only move bits: no flag is raised and no control is read.
#pragma once

#include "sve/handlers/handler_types.h"

handler_zpz sve_fabs_zpz;  // FABS: Zd = Zn without its sign, active lanes; an inactive lane stays. S and D by Zd's size
handler_zpz sve_fneg_zpz;  // FNEG: Zd = Zn with its sign inverted, likewise

// Every element of Zd = the immediate in the format of Zd's size: S, D, any other code is H (FDUP).
aarch64_decode_rc sve_fdup_zi(cpu_state* state, aarch64_z_reg zd, aarch64_sve_fp_dup_imm imm);
