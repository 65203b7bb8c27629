// The signatures that families of handlers share. A name's letters are the operand classes in assembler order: z
// vector, p predicate, r general register, i immediate; parameters are named as the architecture names the operands.
#pragma once

#include "sve/state/cpu_state.h"

namespace quern {

using handler_zz = aarch64_decode_rc(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn);
using handler_zzz = aarch64_decode_rc(cpu_state*, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm);
using handler_zpzz = aarch64_decode_rc(cpu_state*, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn,
                                       aarch64_z_reg zm);
using handler_rpz = aarch64_decode_rc(cpu_state*, aarch64_i_reg rd, aarch64_p_reg pg, aarch64_z_reg zn);

using handler_p = aarch64_decode_rc(cpu_state*, aarch64_p_reg pd);
using handler_pp = aarch64_decode_rc(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pn);
using handler_ppp = aarch64_decode_rc(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pn, aarch64_p_reg pm);
using handler_pppp = aarch64_decode_rc(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                                       aarch64_p_reg pm);
using handler_prr = aarch64_decode_rc(cpu_state*, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm);

}  // namespace quern
