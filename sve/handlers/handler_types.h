// The types of direct handlers by their operands: the letters that end a handler's name, in the order of the assembler
// syntax, destination first. z is a vector, p a predicate, r a general register, i an immediate, v the number of a
// vector whose element 0 is a scalar. Every handler answers DECODE_OK.
#pragma once

#include "sve/state/cpu_state.h"

using handler_zz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_z_reg);
using handler_zzz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg);
using handler_zpz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg);
using handler_zpzz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg);
using handler_vpz = aarch64_decode_rc(cpu_state* state, unsigned int, aarch64_p_reg, aarch64_z_reg);

using handler_p = aarch64_decode_rc(cpu_state* state, aarch64_p_reg);
using handler_pp = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_p_reg);
using handler_ppp = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg);
using handler_pppp = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg, aarch64_p_reg);
using handler_ppz = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg);
using handler_ppzz = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg);

using handler_prr = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_i_reg, aarch64_i_reg);
using handler_rpz = aarch64_decode_rc(cpu_state* state, aarch64_i_reg, aarch64_p_reg, aarch64_z_reg);

// With an immediate: unsigned, signed, or a 64-bit mask.
using handler_zi = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, unsigned int);
using handler_zi_signed = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, int);
using handler_zi_mask = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_sve_logical64_imm);
using handler_zzi = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_z_reg, unsigned int);
using handler_zpi = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, unsigned int);
using handler_ppzi = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, unsigned int);
using handler_ppzi_signed = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_p_reg, aarch64_z_reg, int);
using handler_zpi_float = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_sve_fp_arith_imm);

// With a predicate pattern (0 to 31) and a multiplier (1 to 16).
using handler_rii = aarch64_decode_rc(cpu_state* state, aarch64_i_reg, unsigned int pattern, unsigned int multiplier);
using handler_zii = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, unsigned int pattern, unsigned int multiplier);

// Of loads and stores: the transferred register, the governing predicate, then what makes up the address. In a base
// register number 31 is SP, in an index register 0. Addresses wrap at 64 bits, and no alignment is asked for. A bad
// address in an active lane is a fault of the host in mid-handler: the lanes before it are done, the lanes after it are
// not, and nothing is traced.
using handler_zpri = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg, int);
using handler_zpri_unsigned = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                                                unsigned int);
using handler_zprr = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                                       aarch64_i_reg);
using handler_zpzi = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, unsigned int);
using handler_zpzr = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg,
                                       aarch64_i_rsp_reg);
using handler_zprz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_i_rsp_reg,
                                       aarch64_z_reg);
using handler_zri = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_i_rsp_reg, int);
using handler_pri = aarch64_decode_rc(cpu_state* state, aarch64_p_reg, aarch64_i_rsp_reg, int);
