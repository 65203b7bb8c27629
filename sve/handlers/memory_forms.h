// The types of the handlers of memory instructions, by operand class. Zt is the transferred register, Pg governs. The
// base's number 31 is SP; an index register's number 31 reads as 0. A form returns DECODE_OK; a bad address in an
// active lane is a fault of the host in mid-handler: the lanes before it are done, the lanes after it are not, and
// nothing is traced. Addresses wrap at 64 bits, and no alignment is asked for.
#pragma once

#include "sve/state/cpu_state.h"

namespace quern {

using zpri_form = aarch64_decode_rc(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base, int imm);
using zpri_unsigned_form = aarch64_decode_rc(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                                             unsigned int imm);
using zprr_form = aarch64_decode_rc(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                                    aarch64_i_reg index);

// Gathers and scatters: a vector of addresses; a vector of offsets, then the base; the base, then a vector of indices.
using zpzi_form = aarch64_decode_rc(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn, unsigned int imm);
using zpzr_form = aarch64_decode_rc(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,
                                    aarch64_i_rsp_reg base);
using zprz_form = aarch64_decode_rc(cpu_state*, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg base,
                                    aarch64_z_reg zm);

// Whole registers.
using zri_form = aarch64_decode_rc(cpu_state*, aarch64_z_reg zt, aarch64_i_rsp_reg base, int imm);
using pri_form = aarch64_decode_rc(cpu_state*, aarch64_p_reg pt, aarch64_i_rsp_reg base, int imm);

}  // namespace quern
