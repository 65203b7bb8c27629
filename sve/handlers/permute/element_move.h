// Selecting elements, and copying one value to many. Flags stay. B, H, S, D by Zd's size.
#pragma once

#include "sve/handlers/handler_types.h"

// Zd[i] = Zn[i] where active in Pg, else Zm[i] (SEL, vectors).
handler_zpzz sve_sel_zpzz;

// Active elements of Zd = imm, narrowed or sign-extended; inactive ones become 0 under the zeroing qualifier of Pg and
// stay under any other (CPY, immediate).
aarch64_decode_rc sve_cpy_zpi(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, int imm);

// Active elements of Zd = the low bits of Rn, number 31 being the stack pointer; the others stay (CPY, scalar).
aarch64_decode_rc sve_cpy_zpr(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_i_rsp_reg rn);

// Active elements of Zd = element 0 of vector register vn (0 to 31); the others stay (CPY, SIMD&FP scalar).
aarch64_decode_rc sve_cpy_zpv(cpu_state* state, aarch64_z_reg zd, aarch64_p_reg pg, unsigned int vn);

// Every element of Zd = imm, narrowed or sign-extended (DUP, immediate).
aarch64_decode_rc sve_dup_zi(cpu_state* state, aarch64_z_reg zd, int imm);

// Every element of Zd = the low bits of Rn, number 31 being the stack pointer (DUP, scalar).
aarch64_decode_rc sve_dup_zr(cpu_state* state, aarch64_z_reg zd, aarch64_i_rsp_reg rn);

// Every element of Zd = element `index` of Zn, or 0 when Zn has no such element. B, H, S, D or Q (DUP, indexed).
aarch64_decode_rc sve_dup_zzi(cpu_state* state, aarch64_z_reg zd, aarch64_z_reg zn, unsigned int index);

// Every doubleword of Zd = the mask, whatever the size (DUPM).
aarch64_decode_rc sve_dupm_zi(cpu_state* state, aarch64_z_reg zd, aarch64_sve_logical64_imm imm);
