// Integer comparisons into a predicate: an active element of Pd is 1 where the comparison holds and 0 where not, an
// inactive one 0. All set NZCV by the result under Pg, as it was before Pd changed. B, H, S, D by Zn's size.
#pragma once

#include "sve/handlers/handler_shapes.h"

namespace quern {
using handler_ppzz = aarch64_decode_rc(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                       aarch64_z_reg zm);
// The immediate is narrowed to the element before the comparison.
using handler_ppzi = aarch64_decode_rc(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn, int imm);
using handler_ppzu = aarch64_decode_rc(cpu_state*, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                       unsigned int imm);
}  // namespace quern

quern::handler_ppzz sve_cmpeq_ppzz;  // Zn == Zm (CMPEQ, vectors)
quern::handler_ppzz sve_cmpne_ppzz;  // Zn != Zm (CMPNE, vectors)
quern::handler_ppzz sve_cmpge_ppzz;  // Zn >= Zm, signed (CMPGE, vectors)
quern::handler_ppzz sve_cmpgt_ppzz;  // Zn > Zm, signed (CMPGT, vectors)
quern::handler_ppzz sve_cmphs_ppzz;  // Zn >= Zm, unsigned (CMPHS, vectors)
quern::handler_ppzz sve_cmphi_ppzz;  // Zn > Zm, unsigned (CMPHI, vectors)

quern::handler_ppzi sve_cmpeq_ppzi;  // Zn == imm (CMPEQ, immediate)
quern::handler_ppzi sve_cmpne_ppzi;  // Zn != imm (CMPNE, immediate)
quern::handler_ppzi sve_cmpgt_ppzi;  // Zn > imm, signed (CMPGT, immediate)
quern::handler_ppzi sve_cmplt_ppzi;  // Zn < imm, signed (CMPLT, immediate)
quern::handler_ppzi sve_cmple_ppzi;  // Zn <= imm, signed (CMPLE, immediate)
quern::handler_ppzu sve_cmphi_ppzi;  // Zn > imm, unsigned (CMPHI, immediate)
quern::handler_ppzu sve_cmplo_ppzi;  // Zn < imm, unsigned (CMPLO, immediate)
