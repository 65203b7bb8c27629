// The types of direct handlers by their operands: the letters that end a handler's name, in the order of the assembler
// syntax, destination first. z is a vector, p a predicate, i an immediate, v the number of a vector whose element 0 is
// a scalar. Every handler answers DECODE_OK.
#pragma once

#include "sve/state/cpu_state.h"

using handler_zz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_z_reg);
using handler_zzz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg);
using handler_zpz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg);
using handler_zpzz = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg, aarch64_z_reg);
using handler_vpz = aarch64_decode_rc(cpu_state* state, unsigned int, aarch64_p_reg, aarch64_z_reg);

// With an immediate: unsigned, signed, or a 64-bit mask.
using handler_zi = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, unsigned int);
using handler_zi_signed = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, int);
using handler_zi_mask = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_sve_logical64_imm);
using handler_zzi = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_z_reg, unsigned int);
using handler_zpi = aarch64_decode_rc(cpu_state* state, aarch64_z_reg, aarch64_p_reg, unsigned int);
