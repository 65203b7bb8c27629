// Arithmetic on addresses and with the vector length. Flags stay.
#pragma once

#include "sve/handlers/handler_types.h"

// Xd = imm * the vector length in bytes. Number 31: nothing happens (RDVL).
aarch64_decode_rc sve_rdvl_ri(cpu_state* state, aarch64_i_reg xd, int imm);

// Xd = Xn + imm * the vector length in bytes (ADDVL), in bits packed to bytes (ADDPL). Number 31 is the stack pointer.
aarch64_decode_rc sve_addvl_rri(cpu_state* state, aarch64_i_rsp_reg xd, aarch64_i_rsp_reg xn, int imm);
aarch64_decode_rc sve_addpl_rri(cpu_state* state, aarch64_i_rsp_reg xd, aarch64_i_rsp_reg xn, int imm);

// Zd = Zn + (Zm << shift) (ADR, packed offsets). The operands are the same for every scale and size, so this handler
// reads them from instr_word: the shift from bits 11 and 10, doubleword (else word) elements from bit 22.
handler_zzz sve_adr_scaled_zzz;
