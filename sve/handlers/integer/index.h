// Vectors of evenly spaced elements (INDEX): Zd[i] = start + i * step, wrapping. An immediate is sign-extended or
// narrowed to the element, a register narrowed; register number 31 reads as 0. B, H, S, D by Zd's size. Flags stay.
#pragma once

#include "sve/handlers/handler_types.h"

aarch64_decode_rc sve_index_zii(cpu_state* state, aarch64_z_reg zd, int start, int step);
aarch64_decode_rc sve_index_zir(cpu_state* state, aarch64_z_reg zd, int start, aarch64_i_reg rm);
aarch64_decode_rc sve_index_zri(cpu_state* state, aarch64_z_reg zd, aarch64_i_reg rn, int step);
aarch64_decode_rc sve_index_zrr(cpu_state* state, aarch64_z_reg zd, aarch64_i_reg rn, aarch64_i_reg rm);
